#!/usr/bin/env python3
"""Runs sabxml as people do and looks at what it prints, where, and with what exit code.

usage: command_line_test.py SAMPLES_FOLDER LIBRARY COMMAND...    (see program.py)
"""

import contextlib
import json
import os
import pty
import re
import shutil
import subprocess
import sys
import time
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

from authoring import Authoring  # noqa: F401  (more tests)
from preview import Preview  # noqa: F401  (more tests)
from program import (APP, COMMAND, ON_32_BIT_WINDOWS, ON_WINDOWS, ROOT, SETTINGS,
                     environment, native_only, run, scratch)
from records import record_of_json, record_of_xml
from registration import Registration  # noqa: F401  (more tests)
from settings_files import SettingsFiles  # noqa: F401  (more tests)

sys.path.insert(0, str(ROOT / "tools"))
from idlgen import reader as idlgen_reader  # noqa: E402

UPDATE_FILE = f"VeAutoUpdateAdminCfgParser {SETTINGS}"
UPDATE = f"{UPDATE_FILE} /Settings/Update"
DISPLAY_FILE = f"VeDisplayCfgParser {SETTINGS}"
DISPLAY = f"{DISPLAY_FILE} /Settings/Display"

# arguments; exit code; what the output holds; what the error output holds, behind it
CASES = [
    # The command line itself.
    ("--version", 0, ["sabxml "]),
    ("--help", 0, ["walk", "Exit codes:", "SABXML_SERVER"]),
    ("", 2, [], "sabxml: A subcommand is required"),
    ("settings gte", 2, [], "no command gte; did you mean get?\nTry: sabxml settings --help"),
    ("show --jsn=1", 2, [], "no option --jsn; did you mean --json?\nTry: sabxml show --help"),
    ("describe a b", 2, [], "describe takes no further argument: b"),
    ("help", 0, ["Exit codes:"]),
    ("help shw", 2, [], "there is no command shw; did you mean show?"),
    ("help settings get", 0, ["Print values as a load takes them"]),
    ("show", 2, [], "FILE is required\nTry: sabxml show --help"),
    ("show a\x1b\n.xml", 1, [], "sabxml: a\\x1b\n  .xml: "),
    ("show a \udce0\udc80\udcaf.xml", 1, [], "sabxml: \\xe0\\x80\\xaf.xml: this is not UTF-8"),

    # The standard input.
    ("show -", 0, ["ConfigurationPath  -\n", "PIPED"]),
    ("show - --json -", 0, ["PIPED"]),
    ("walk no.xml", 1, ["\n1 file, 1 failed\n"], "no.xml: "),
    ("walk -", 1, ["FAILED: "], "-: Application/AppTemplateID is missing"),
    ("get VeDisplayCfgParser - /Cmd/S PtSize", 0, ["PtSize  5\n"]),
    ("settings diff VeDisplayCfgParser - - /Cmd/S --exit-code", 0, ["No differences"]),
    ("settings get VeDisplayCfgParser - /Cmd[[", 1, [], "sabxml: -: "),
    ("settings set VeDisplayCfgParser - /Cmd/S PtSize=6", 2, [], "cannot be changed"),
    ("settings edit VeDisplayCfgParser - /Cmd/S", 2, [], "cannot be changed"),
    (f"show {APP} --colour pink", 2, [], "--colour"),
    ("describe", 2, [], "name a class, or give --all"),

    # Descriptors.
    ("show samples/workshop/templates/assembly.xml", 0, ["PreServiceCLSIDs   (none)\n"]),
    ("show kinds/utf16be.xml", 0, ["CmdFileID          字\n"]),
    ("show kinds/prolog.xml", 0, ["VeCmdParser\n"]),
    ("show kinds/control.xml", 0, ["  CmdFileID          a\\n\\tb\\x9b\n"]),
    ("show kinds/prefix.xml", 1, [], "Cmd/Identify is missing", "(0x84000C04: "),
    ("show kinds/empty.xml", 1, [], "kinds/empty.xml: this is no XML file"),
    ("show kinds", 1, [], "kinds: this is a folder"),
    (f"show no.xml {APP}", 1, ["WORKSHOP_2D"], "sabxml: no.xml: No such file or directory"),
    (f"show {SETTINGS}", 1, [], "the document element Settings is that of no descriptor",
     "sabxml get CLASS"),
    ("show kinds/broken.xml", 1, [], "kinds/broken.xml:3:",
     "(0x84000C06: the document could not be loaded)"),

    # Text templates.
    ("show kinds/utf16le.txt", 0, ["[0]  <a>\n"]),
    ("show kinds/prose.txt", 1, [], "kinds/prose.txt: this is no XML file", "[TitleBlock]"),

    # Settings.
    (f"get {UPDATE} server INTERVAL", 0, ["Server    updates.workshop.example\nInterval  30\n"]),
    (f"get {UPDATE_FILE} /Settings/Apprentice/Update --json", 0,
     ['{\n  "DisableHttp": false,\n  "ReadOnly": true,\n  "Interval": 2147483647,\n  "Server": ""\n}']),
    (f"get {UPDATE} Intervall", 1, [],
     "VeAutoUpdateAdminCfgParser has no value named Intervall; did you mean Interval?"),
    ("get VeAutoUpdateAdminCfgParser kinds/broken.xml /x", 1, [], "kinds/broken.xml:3:"),
    (f"get VeAppParser {SETTINGS} /x", 1, [], "VeAppParser is no class for settings"),
    (f"get SabXmlParser.VeTxtPaser {SETTINGS} /x", 1, [],
     "the server has no class named SabXmlParser.VeTxtPaser; did you mean VeTxtParser?"),
    (f"get {DISPLAY_FILE} /Settings/display", 1, [], "the node path /Settings/display leads to no"),
    (f"get {DISPLAY}/", 1, [], "ends with a slash"),
    (f"get VeStandardCfgParser {SETTINGS} /x", 1, [], "VeStandardCfgParser is no class for settings"),

    (f"get {DISPLAY} displaybylinewidth IsDisplayByLineWidth", 0,
     ["DisplayByLineWidth  true\nDisplayByLineWidth  true\n"]),
    (f"get VeBomcfgParser {SETTINGS} /Settings/Text", 0, ["DefChsFont       仿宋\n"]),

    # Settings as their files hold them.
    ("settings list --json", 0,
     ['"key": "CmdInputHistoryMax",\n        "member": "CmdInputHistoryMax",\n'
      '        "type": "short",\n        "default": 0,\n        "note": "only saved"']),
    ("settings list VeTextParser", 1, [], "group VeTextParser; did you mean VeTxtParser?"),
    (f"settings get {DISPLAY} linewidthdisplayscale HighLightColor DragMode", 0,
     ["LineWidthDispScale  1.500000\nHighLightColor      4278255360\nDragMode            false\n"]),
    (f"settings get {DISPLAY} Point", 1, [], "has no key Point; \"sabxml settings list VeDisplayCfg"),
    (f"settings get {DISPLAY} PTSiz", 1, [], "VeDisplayCfgParser has no key PTSiz; did you mean PtSize?"),
    (f"settings get VeBomcfgParser {SETTINGS} /Settings/Text Colour", 1, [],
     "/Settings/Text has no key Colour"),
    (f"settings get {DISPLAY_FILE} /Settings[[", 1, [], SETTINGS, "/Settings[["),
    ("settings get VeDisplayCfgParser no.xml /x", 1, [], "no.xml: "),
    (f"settings get {DISPLAY_FILE} /Settings/Dislay PtSize", 1, [], "mean /Settings/Display?"),
    (f"settings get {DISPLAY_FILE} /No PtSize ZoomFactor --default 7 --json", 0,
     ['"PtSize": 7,\n  "ZoomFactor": 7\n']),
    (f"settings get {DISPLAY} PtSize --default x", 1, [], "PtSize=x is refused"),
    (f"settings get {DISPLAY} ZoomFactor VeTxtParser:/Settings/Text DefChsFont", 0,
     ["VeDisplayCfgParser:/Settings/Display\nZoomFactor  60\nVeTxtParser:/Settings/Text\nDefChsFont  "]),
    (f"settings get {DISPLAY} ZoomFactor --is-set", 0, []),
    (f"settings get {DISPLAY} ZoomFactor PtSize --is-set", 1, []),
    *((f"settings get {arguments} --is-set", 2, [], text) for arguments, text in [
        ("VeDisplayCfgParser no.xml /x PtSize", "no.xml: "),
        (f"{DISPLAY} PTSiz", "did you mean PtSize?"),
        (f"VeDisplyCfgParser {SETTINGS} /Settings/Display PtSize", "did you mean VeDisplayCfgParser?"),
        (f"{DISPLAY_FILE} /Settings[[ PtSize", "/Settings[["),
        (f"VeBomcfgParser {SETTINGS} /Settings/Text 1a", "1a")]),
    ("settings diff VeTxtParser no.xml - /x --exit-code", 2, [], "no.xml: "),
    (f"settings get VeAppParser {SETTINGS} /x", 1, [], "; \"sabxml settings list\" lists all"),
    (f"settings get {DISPLAY_FILE} /Settings/Display/", 1, [], "ends with a slash"),
    (f"settings get VeSysParameterCfgParser {SETTINGS} /Settings AllAutoLayerRule --json", 0, ["{}\n"]),
    (f"settings dump VeSysParameterCfgParser {SETTINGS} /Settings/Display AllMatchRule", 0,
     ["structure  (not there)\n"]),
    (f"settings compact {DISPLAY} ZoomFactor", 2, [], "BLOCK is CLASS:NODEPATH"),
    (f"settings unset {DISPLAY} VeTxtParser:/Settings/Text InCodePage", 2, [], "KEY for VeDisplay"),
    *((f"settings watch {DISPLAY} --changes {number}", 2, [], f"--changes: {number} is refused")
      for number in ("0", "abc", "1x", "-1")),
    ("settings range VeSelectCfgParser gripsize ExceptiveColors BigCursor", 1, [], "no key BigCursor"),
    ("settings range VeSelectCfgParser gripsize ExceptiveColors", 0,
     ["GripSize         unsigned short    0 to 65535 ", "list of unsigned  0 to 4294967295 "]),
    ("settings range VeDisplayCfgParser UCSDispCtrl --json", 0,
     ['"minimum": -32768,\n    "maximum": 32767', '"help": "Where the icon', '"UCSDisplayCtrl"']),
    (f"settings set {DISPLAY} PtSize", 2, [], 'write KEY=VALUE instead of "PtSize"'),
    (f"settings set {DISPLAY} PtSize=1 ptsize=2", 2, [], "PtSize is named twice"),
    (f"settings diff VeBomcfgParser {SETTINGS} {SETTINGS} /Settings/Text /Settings/Update "
     "--exit-code", 1, ["DefChsFont       仿宋           -> (not there)\n",
     "Server           (not there)    -> updates.workshop.example\n"]),

    # Classes.
    ("classes", 0, ["VeAppParser ", "IVePrsAccelColl\n", " (registered as {070F4336-"]),
    ("describe VePrsAccelColl", 0, ["GetNext([in, out] LONG_PTR* io_pPos): IVePrsAccel*",
     "AddTail([in] IVePrsAccel* i_pItem, [in, out, optional] LONG_PTR* o_lpPosition)"]),
    ("describe SabXmlParser.VePrsAccel.1", 0, ["VePrsAccel  VePrsAccel Class\n"]),
    ("describe {B429CD6A-8aa8-4D77-B578-419B1E3C856F}", 0, ["VePrsAccel  VePrsAccel Class\n"]),
    ("describe b429cd6a-8aa8-4D77-B578-419B1E3C856F", 0, ["VePrsAccel  VePrsAccel Class\n"]),
    ("describe iveprsaccel", 0, ["IVePrsAccel", "get    RibbonKey: BSTR"]),
    ("describe IVeCfgParser --json", 0, ['"name": "IVeCfgParser",\n  "iid": "{', '"name": "Save"']),
    ("describe VeDisplayCfgParser", 0,
     ["           3  get    DragMode: VARIANT_BOOL ", " 17  put    LineWidthDisplayScale: double ",
      "GlobalLnTypeScale: float ", "UCSIconStyle: int ", "HatchLineDensity: long ", "ZoomFactor: short "]),
    ("describe VeSelectCfgParser", 0, ["GripSize: unsigned short ", ": SAFEARRAY(int)",
     ": unsigned long "]),
    ("describe VeStdDimRevParser", 0, ["([in] ULONG_PTR "]),
    ("describe --all --json", 0,
     ['"name": "VeUiParser"', '"clsid": "{A72B61B7-870B-4BE9-BFC1-CA07CBEA8EDB}"',
      '"help": "VePrsAccel Class",\n    "interface": "IVePrsAccel"',
      '"id": 17,\n        "kind": "method",\n        "name": "GetNext",\n'
      '        "result": "IVePrsAccel*",\n        "parameters": [\n          {\n'
      '            "name": "io_pPos",\n            "type": "LONG_PTR*",\n            "in": true,\n'
      '            "out": true,\n            "optional": false']),
    ("describe IVePrsAcel --idl", 1, [], "did you mean IVePrsAccel?"),
    ("describe VePrsAccel --idl --json", 2, [], "choose one"),
    ("describe VeNothing", 1, [], 'no class or interface named VeNothing; "sabxml classes"'),

    # The server.
    (f"--verbose get {UPDATE} Interval", 0, ["Interval  30"], "the registry is ", "the server is ",
     f"opens {SETTINGS}: "),
    ("unregister --json", 2, [], "unregister: --json is for --dry-run"),
    ("classes --server no-such-library", 1, [],
     "the server's library cannot be loaded: no-such-library", "Name it with --server"),
]


def run_on_terminal(*arguments, **changes):
    """What a terminal gets; both outputs go there."""
    controller, terminal = pty.openpty()
    with subprocess.Popen([*COMMAND, *arguments], cwd=scratch, env=environment(**changes),
                          stdin=terminal, stdout=terminal, stderr=terminal):
        os.close(terminal)
        output = b""
        with contextlib.suppress(OSError):
            while piece := os.read(controller, 65536):
                output += piece
    os.close(controller)
    return output.decode("utf-8")


def signatures(library, interface):
    """The members of an interface, those of its bases first, without the names of parameters."""
    base = library.interfaces.get(interface.base)
    members = [(m.dispid, m.kind, m.name, m.help,
                [(str(p.type), p.directions) for p in m.parameters]) for m in interface.members]
    return [interface.guid, *(signatures(library, base)[1:] if base else []), *members]


def as_described(text):
    """Types as a type library of the system knows them."""
    if ON_32_BIT_WINDOWS:
        return text.replace("ULONG_PTR", "unsigned long").replace("LONG_PTR", "long")
    return text


class CommandLine(unittest.TestCase):
    maxDiff = 4000

    def test_cases(self):
        for arguments, code, in_output, *in_errors in CASES:
            if ON_WINDOWS and "No such file or directory" in "".join(in_errors):
                in_errors = ["no.xml: "]
            if ON_WINDOWS and "\udce0" in arguments:
                continue
            with self.subTest(arguments):
                result, output, errors = run(*arguments.split(" ")) if arguments else run()
                self.assertEqual(code, result, errors)
                for text in in_output:
                    self.assertIn(as_described(text), output)
                for text in in_errors:
                    self.assertIn(text, errors)
                self.assertEqual(bool(in_errors), bool(errors), errors)

    def test_several_files_are_one_document(self):
        result, output, _ = run("show", "kinds/utf16be.xml", "no.xml", "kinds/prefix.xml", "-", "--json")
        first, *failed, last = json.loads(output)
        self.assertEqual((1, "字", "PIPED"), (result, first["VeCmdParser"]["CmdFileID"],
                                             last["VeCmdParser"]["CmdFileID"]))
        self.assertEqual(["no.xml", "kinds/prefix.xml"], [file["file"] for file in failed])
        self.assertEqual([None, "0x84000C04"], [file["error"]["code"] for file in failed])
        self.assertTrue(failed[0]["error"]["reason"].startswith("no.xml: "))

    @unittest.skipIf(ON_WINDOWS, "a type library of the system has other names for some types")
    def test_idl_is_what_the_interfaces_are_made_from(self):
        original = idlgen_reader.read(ROOT / "idl/SabXmlParser.idl")
        text = (f'[\nuuid({original.guid}), version({original.version}), lcid(0x0804), '
                f'helpstring("x")\n]\nlibrary {original.name}\n{{\n'
                + (ROOT / "idl/types.idl").read_text(encoding="utf-8")
                + run("describe", "--all", "--idl")[1] + "};\n")
        (scratch / "all.idl").write_text(text, encoding="utf-8")
        printed = idlgen_reader.read(scratch / "all.idl")
        self.assertEqual([signatures(original, interface) for interface in original.interfaces.values()],
                         [signatures(printed, interface) for interface in printed.interfaces.values()])
        self.assertEqual(*({(c.name, c.guid, c.help, c.interface) for c in library.coclasses.values()}
                           for library in (original, printed)))

    @native_only
    def test_nesting_needs_no_stack(self):
        depth = 6000  # more than 43 bytes of stack for each would be too much
        (scratch / "deep.xml").write_text("<UI>" + "".join(
            f"<{parent}>{f'<{name}>' * depth}{f'</{name}>' * depth}</{parent}>"
            for parent, name in [("MainMenu", "Popup"), ("CaptionCustomButtons", "RibbonButton")])
            + "</UI>")
        for option in ([], ["--json"]):
            result, output, errors = run(
                "-c", 'ulimit -s 256; exec "$@"', "sh", *COMMAND, "show", "deep.xml", *option,
                command=["sh"])
            self.assertEqual((0, ""), (result, errors))
            self.assertEqual([depth] * 2, [output.count(name) for name in ("IsPopup", "GroupButtons")])

    @native_only
    def test_output_that_cannot_be_written(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([*COMMAND, "classes"], stdout=full, stderr=subprocess.PIPE,
                                    cwd=scratch, env=environment())
        self.assertEqual(1, result.returncode)
        self.assertIn(b"the output could not be written", result.stderr)

    def test_reader_that_has_read_enough(self):
        with subprocess.Popen([*COMMAND, "describe", "--all"], cwd=scratch, env=environment(),
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            process.stdout.readline()
            process.stdout.close()
            self.assertEqual(b"", process.stderr.read())

    @native_only
    def test_colours_are_for_terminals(self):
        coloured = "\x1b["
        for output, expected in [
            (run_on_terminal("show", APP), True),
            (run_on_terminal("show", APP, NO_COLOR="1"), False),
            (run_on_terminal("show", APP, "--colour", "never"), False),
            (run("show", APP)[1], False),
            (run("show", APP, "--colour=always", NO_COLOR="1")[1], True),
        ]:
            self.assertEqual(expected, coloured in output, output[:80])


class Walk(unittest.TestCase):
    maxDiff = 4000

    def test_samples(self):
        """All texts of the samples, and no others, are told, by their names and in their places."""
        result, output, _ = run("walk", APP, "--json")
        walk = json.loads(output)
        self.assertEqual((0, 18, 0), (result, walk["files"], walk["failed_files"]))
        files = dict(files_of(walk))
        self.assertEqual(18, len(files))
        for name, values in files.items():
            with self.subTest(name):
                text = (scratch / name).read_bytes()
                encoding = re.search(rb'encoding="([^"]+)"', text) or [0, b"utf-16" if b"\0" in text
                                                                       else b"utf-8-sig"]
                text = re.sub(r"<\?xml.*?\?>", "", text.decode(encoding[1].decode()), count=1)
                self.assertEqual(record_of_xml(ET.fromstring(text)).sorted(),
                                 record_of_json(values).sorted())

    def test_goes_on_after_failures(self):
        broken = scratch / "broken"
        shutil.copytree(scratch / "samples/workshop", broken)
        (broken / "commands").rename(broken / "Commands")
        (broken / "Commands/draw.xml").unlink()
        (broken / "modules/sheet_metal.xml").write_text("<Module><Identify/></Module>")
        result, output, errors = run("walk", "broken/application.xml")
        self.assertEqual(1, result)
        lines = [line.split() for line in output.splitlines()]
        self.assertIn(["broken/Commands/draw.xml", "commands", "FAILED:", "the", "document", "could",
                       "not", "be", "loaded"], lines)
        self.assertIn(["broken/Commands/assembly.xml", "commands", "3", "commands"], lines)
        self.assertEqual("15 files, 2 failed", output.splitlines()[-1])
        for text in [
            'broken/environments/drawing.xml names it "..\\commands\\draw.xml"'
            " (0x84000C06: the document could not be loaded)",
            "sabxml: broken/modules/sheet_metal.xml: Module/Identify is empty",
            'broken/templates/part.xml names it "..\\modules\\sheet_metal.xml" (0x84000C03: ',
            "sabxml: warning: broken/Commands/file.xml: taken, though the letter case differs; "
            'broken/environments/drawing.xml names it "..\\commands\\file.xml"',
        ]:
            self.assertIn(text, errors)

    @native_only
    def test_progress_shows_when_it_takes_long(self):
        shutil.copytree(scratch / "samples/workshop", scratch / "slow")
        count = 50000
        seconds = 0
        while seconds < 1.5:
            count *= 2
            (scratch / "slow/commands/draw.xml").write_text(
                f"<Cmd><Identify>X</Identify><Commands>{'<Command/>' * count}</Commands></Cmd>")
            start = time.monotonic()
            output = run_on_terminal("walk", "slow/application.xml")
            seconds = time.monotonic() - start
        self.assertIn("files read; reading slow/commands/draw.xml", output)
        self.assertIn("\r\x1b[K\x1b[36mslow/application.xml", output)  # gone when all is known
        self.assertNotIn("files read", run_on_terminal("walk", APP))


def files_of(node):
    """The names of all files of a walk, and what was read of them."""
    if isinstance(node, dict):
        if "values" in node:
            yield node["file"], node["values"]
        node = list(node.values())
    if isinstance(node, list):
        for inner in node:
            yield from files_of(inner)


if __name__ == "__main__":
    unittest.main()
