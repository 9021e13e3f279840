#!/usr/bin/env python3
"""Runs sabxml as people do and looks at what it prints, where, and with what exit code.

usage: command_line_test.py SAMPLES_FOLDER LIBRARY COMMAND...

COMMAND runs sabxml; where it begins with with_wine.sh, the system is Windows.
"""

import contextlib
import json
import os
import pty
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / "tools"))
from idlgen import reader  # noqa: E402

SAMPLES, LIBRARY, *COMMAND = sys.argv[1:]
del sys.argv[1:]
HERE = Path(__file__).parent
ROOT = HERE.parents[1]
ON_WINDOWS = "with_wine" in COMMAND[0]
ON_32_BIT_WINDOWS = ON_WINDOWS and (Path(COMMAND[1]).parent / "wine32").exists()
native_only = unittest.skipIf(ON_WINDOWS, "POSIX only")

APP = "samples/workshop/application.xml"
SETTINGS = "samples/workshop/settings.xml"
TEMPLATES = "samples/workshop/text_templates/"
UPDATE_FILE = f"VeAutoUpdateAdminCfgParser {SETTINGS}"
UPDATE = f"{UPDATE_FILE} /Settings/Update"
DISPLAY_FILE = f"VeDisplayCfgParser {SETTINGS}"
DISPLAY = f"{DISPLAY_FILE} /Settings/Display"

# arguments; exit code; what the output holds; what the error output holds, behind it
CASES = [
    # The command line itself.
    ("--version", 0, ["sabxml "]),
    ("--help", 0, ["walk", "Exit codes:", "SABXML_SERVER"]),
    ("show --help", 0, ["Examples:"]),
    ("walk --help", 0, ["backslashes"]),
    ("register --help", 0, ["SABCOM_REGISTRY"]),
    ("", 2, [], "sabxml: A subcommand is required"),
    ("shew", 2, [], "sabxml: ", "Try: sabxml --help"),
    ("show", 2, [], "FILE is required"),
    ("get VeAppParser x", 2, [], "NODEPATH is required"),
    (f"show {APP} --colour pink", 2, [], "--colour"),
    ("describe", 2, [], "name a class, or give --all"),

    # Descriptors.
    (f"show {APP}", 0, ["AppID                   WORKSHOP_2D\n",
     "    [1]  templates\\assembly.xml\n", "LocalName          常规\n", "  OnlineCloud\n"]),
    ("show samples/workshop/templates/part.xml", 0, ["VeTmplParser\n", "    [1]  tidy-up\n",
     "      FilterName  交换文件\n"]),
    ("show samples/workshop/templates/assembly.xml", 0, ["PreServiceCLSIDs   (none)\n"]),
    ("show samples/workshop/commands/file.xml", 0, ["IsGroup          true\n",
     "SystemCommand    true\n"]),
    ("show samples/workshop/standards/catalogue.xml", 0,
     ["VeStandardCfgParser\n  StandardParserColl\n    [0]\n      Name                车间标准\n",
     "SymLoadPos          2\n", "AttachSymStdID  102\n", "LayoutDatas/LayoutData[2]  Ra 6.3\n"]),
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
    (f"show {TEMPLATES}title_block.txt", 0,
     ["    [0]\n      Name\n      Lines\n        [0]  Title block of", "[4]  [ISO 5457], A3\n"]),
    (f"show --json {TEMPLATES}bill_of_materials.txt", 0,
     ['"Name": "BomBody",\n        "Lines": [\n          "${序号}, ${代号}, ']),
    ("show kinds/utf16le.txt", 0, ["[0]  <a>\n"]),
    ("show kinds/prose.txt", 1, [], "kinds/prose.txt: this is no XML file", "[TitleBlock]"),

    # Settings.
    (f"get {UPDATE}", 0,
     ["DisableHttp  true\nReadOnly     false\nInterval     30\nServer       updates.workshop.ex"]),
    (f"get {UPDATE} server INTERVAL", 0, ["Server    updates.workshop.example\nInterval  30\n"]),
    (f"get {UPDATE_FILE} /Settings/Apprentice/Update --json", 0,
     ['{\n  "DisableHttp": false,\n  "ReadOnly": true,\n  "Interval": 2147483647,\n  "Server": ""\n}']),
    (f"get {DISPLAY} HighLightColor", 0, ["HighLightColor  4278255360\n"]),
    (f"get {UPDATE} Colour", 1, [], "VeAutoUpdateAdminCfgParser has no value named Colour"),
    ("get VeAutoUpdateAdminCfgParser kinds/broken.xml /x", 1, [], "kinds/broken.xml:3:"),
    ("get VeAutoUpdateAdminCfgParser no.xml /x", 1, [], "no.xml: "),
    (f"get VeAppParser {SETTINGS} /x", 1, [], "VeAppParser is no class for settings"),
    (f"get VeNothing {SETTINGS} /x", 1, [], "the server has no class named VeNothing",
     "sabxml classes"),

    # Settings as their files hold them.
    ("settings", 2, [], "sabxml: "),
    ("settings set --help", 0, ["KEY=VALUE", "--backup", "--dry-run"]),
    ("settings list", 0, ["VeDisplayCfgParser          39 keys  screen display\n",
     "VeProductCfgParser          any key"]),
    ("settings list vetxtparser VeBomcfgParser", 0, ["  DefTxtHei         double    3.500000\n",
     "member IsExplodeByOneself\n", "VeBomcfgParser: named values"]),
    ("settings list --json", 0,
     ['"key": "CmdInputHistoryMax",\n        "member": "CmdInputHistoryMax",\n'
      '        "type": "short",\n        "default": 0,\n        "note": "only saved"']),
    ("settings list VeAppParser", 1, [], "no settings group VeAppParser", "settings list"),
    (f"settings get {DISPLAY} linewidthdisplayscale HighLightColor DragMode", 0,
     ["LineWidthDispScale  1.500000\nHighLightColor      4278255360\nDragMode            false\n"]),
    (f"settings get {DISPLAY} HighLightColor DisplayByLineWidth --json", 0,
     ['{\n  "HighLightColor": 4278255360,\n  "DisplayByLineWidth": 1\n}\n']),
    (f"settings get {DISPLAY} Colour", 1, [], "VeDisplayCfgParser has no key Colour",
     "settings list VeDisplayCfgParser"),
    (f"settings get VeBomcfgParser {SETTINGS} /Settings/Text Colour", 1, [],
     "/Settings/Text has no key Colour"),
    (f"settings get {DISPLAY_FILE} /Settings/display", 1, [],
     f"{SETTINGS}: the node path /Settings/display leads to no element: see to its spelling"),
    (f"settings get {DISPLAY_FILE} /Settings[[", 1, [], SETTINGS, "/Settings[["),
    ("settings get VeDisplayCfgParser no.xml /x", 1, [], "no.xml: "),
    ("settings set VeDisplayCfgParser kinds/broken.xml /x PtSize=1", 1, [], "kinds/broken.xml:3:"),
    (f"settings set {DISPLAY} PtSize", 2, [], 'write KEY=VALUE instead of "PtSize"'),
    (f"settings set {DISPLAY} PtSize=1 ptsize=2", 2, [], "PtSize is named twice"),
    (f"settings dump VeTxtParser {SETTINGS} /Settings/Text --json", 0,
     ['"DefTxtHei": {\n      "type": "double",\n      "value": 2.5,\n      "copies": [\n'
      '        {\n          "text": "2.500000"']),
    (f"settings diff {UPDATE_FILE} {SETTINGS} /Settings/Update /Settings/Apprentice/Update", 0,
     ["DisableHttp  true                      -> false (default)\n",
     "Interval     30                        -> 2147483647\n"]),
    (f"settings diff {DISPLAY_FILE} {SETTINGS} /Settings/Display --exit-code", 0,
     ["No differences.\n"]),
    (f"settings diff VeBomcfgParser {SETTINGS} {SETTINGS} /Settings/Text /Settings/Update "
     "--exit-code", 1, ["DefChsFont       仿宋           -> (not there)\n",
     "Server           (not there)    -> updates.workshop.example\n"]),

    # Classes.
    ("classes", 0, ["VeAppParser ", "IVePrsAccelColl\n"]),
    ("describe veappparser", 0, ["ConfigurationPath: BSTR",
     "5  method GetTmplatePaths(): SAFEARRAY(BSTR)",
     "6  method GetConfigurations(): IVePrsConfigColl*"]),
    ("describe VePrsAccelColl", 0, ["GetNext([in, out] LONG_PTR* io_pPos): IVePrsAccel*",
     "AddTail([in] IVePrsAccel* i_pItem, [in, out, optional] LONG_PTR* o_lpPosition)"]),
    ("describe VeNothing", 1, [], "the server has no class named VeNothing"),

    # The server.
    ("classes --server no-such-library", 1, [],
     "the server's library cannot be loaded: no-such-library", "Name it with --server"),
]


def classes_as_defined():
    """What describe --all --json says, from the interface definitions themselves."""
    library = reader.read(ROOT / "idl/SabXmlParser.idl")

    def described(member):
        parameters = list(member.parameters)
        returned = parameters.pop() if parameters and parameters[-1].is_retval else None
        names = [p.name for p in parameters]
        if member.kind == "propput":  # whose last parameter no type information names
            names[-1] = "value"
        return {"id": member.dispid, "kind": member.kind.replace("prop", ""), "name": member.name,
                "result": str(returned.type)[:-1] if returned else "", "help": member.help,
                "parameters": [{"name": name, "type": str(p.type), "in": p.is_in, "out": p.is_out,
                                "optional": "optional" in p.directions}
                               for name, p in zip(names, parameters)]}

    def members(name):
        interface = library.interfaces.get(name)
        if not interface:
            return []
        return members(interface.base) + [described(member) for member in interface.members]

    return {c.name: {"name": c.name, "clsid": f"{{{c.guid}}}", "help": c.help,
                     "interface": c.interface, "members": members(c.interface)}
            for c in library.coclasses.values()}


def setUpModule():
    """Everything runs in a scratch folder with a copy of the samples and files that are wrong."""
    global scratch
    scratch = Path(unittest.enterModuleContext(tempfile.TemporaryDirectory()))
    shutil.copytree(SAMPLES, scratch / "samples/workshop")
    kinds = scratch / "kinds"
    kinds.mkdir()
    command = "<Cmd><Identify>%s</Identify></Cmd>"
    for name, content in {
        "utf16be.xml": b"\xfe\xff" + (command % "字").encode("utf-16-be"),
        "prolog.xml": b"\xef\xbb\xbf<?xml version='1.0'?><!-- <UI> --><?x a>b?>\n" +
                      (command % "X").encode(),
        "control.xml": (command % "a\n\tb\u009b").encode(),
        "prefix.xml": b"<w:Cmd xmlns:w='urn:w'><w:Identify>X</w:Identify></w:Cmd>",
        "empty.xml": b"",
        "utf16le.txt": b"\xff\xfe" + "\n[X]\n<a>".encode("utf-16-le"),
        "prose.txt": "\ufeffProse with a < in it, but no [marker]".encode(),
        "broken.xml": b"<Application>\n  <Identify>\n</Application>",
    }.items():
        (kinds / name).write_bytes(content)
    broken = scratch / "broken"
    shutil.copytree(scratch / "samples/workshop", broken)
    (broken / "commands").rename(broken / "Commands")
    (broken / "Commands/draw.xml").unlink()
    (broken / "modules/sheet_metal.xml").write_text("<Module><Identify/></Module>")


def environment(**changes):
    """The registry of these tests is a file that does not exist, or that of a Wine prefix."""
    result = {k: v for k, v in os.environ.items() if k not in ("SABXML_SERVER", "NO_COLOR")}
    return {**result, "SABCOM_REGISTRY": str(scratch / "registry.reg"), **changes}


def run(*arguments, command=COMMAND, **changes):
    result = subprocess.run([*command, *arguments], cwd=scratch, env=environment(**changes),
                            capture_output=True, timeout=120)
    return result.returncode, result.stdout.decode("utf-8"), result.stderr.decode("utf-8")


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


def as_described(text):
    """Types as a type library of the system knows them."""
    if ON_32_BIT_WINDOWS:
        return text.replace("ULONG_PTR", "unsigned long").replace("LONG_PTR", "long")
    return text


class CommandLine(unittest.TestCase):
    maxDiff = 4000

    def test_cases(self):
        for arguments, code, in_output, *in_errors in CASES:
            if ON_WINDOWS and any("kinds/broken.xml:3:" in text for text in in_errors):
                in_errors = ["kinds/broken.xml"]  # MSXML counts otherwise
            if ON_WINDOWS and "No such file or directory" in "".join(in_errors):
                in_errors = ["no.xml: "]
            with self.subTest(arguments):
                result, output, errors = run(*arguments.split())
                self.assertEqual(code, result, errors)
                for text in in_output:
                    self.assertIn(as_described(text), output)
                for text in in_errors:
                    self.assertIn(text, errors)
                self.assertEqual(bool(in_errors), bool(errors), errors)

    def test_every_class_is_described_as_it_is_defined(self):
        """On Windows the description comes from the type library, elsewhere from the tables."""
        _, output, _ = run("describe", "--all", "--json")
        actual = {described["name"]: described for described in json.loads(output)}
        expected = classes_as_defined()
        expected = json.loads(as_described(json.dumps(expected)))
        self.assertEqual(sorted(expected), sorted(actual))
        for name, described in expected.items():
            with self.subTest(name):
                if ON_WINDOWS:  # Wine reads the Chinese of a type library as if it were Latin-1
                    for member, other in zip(described["members"], actual[name]["members"]):
                        if not member["help"].isascii():
                            member["help"] = other["help"]
                self.assertEqual(described, actual[name])

    @unittest.skipIf(ON_WINDOWS, "Wine's MSXML does not know GB2312")
    def test_file_in_gb2312(self):
        _, output, _ = run("show", "samples/workshop/ui/sheet_metal.xml")
        self.assertIn("展开钣金件", output)

    @native_only
    def test_nesting_needs_no_stack(self):
        depth = 20000
        (scratch / "deep.xml").write_text(
            f"<UI><MainMenu>{'<Popup>' * depth}{'</Popup>' * depth}</MainMenu></UI>")
        for option in ([], ["--json"]):
            result, output, errors = run(
                "-c", 'ulimit -s 256; exec "$@"', "sh", *COMMAND, "show", "deep.xml", *option,
                command=["sh"])
            self.assertEqual((0, ""), (result, errors))
            self.assertEqual(depth, output.count("IsPopup"))

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


# A file in a form of its own, all of which has to stay.
HEAD = "<S  x=\"1\">\r\n\t<!-- 图 -->\r\n\t<G a='1'>"
TAIL = "\r\n\t</G>\r\n<Other  /> <![CDATA[]]>\r\n</S>\r\n\r\n"
SAVED = ("\r\n\t\t<PtSize>1</PtSize>\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<PtSize>2</PtSize>"
         "\r\n\t\t<Mine>1</Mine>\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<PtSize>3</PtSize>"
         "\r\n\t\t<Mine>2</Mine>")
RULES = "\r\n\t\t<AllMatchRule><A><Value>x</Value></A></AllMatchRule>"

# command, class and further arguments; the elements before and after; what the output holds
CHANGES = [
    ("set VeDisplayCfgParser PtSize=8 BigCursor=true", '\r\n\t\t<PtSize k="1"> 7 </PtSize >',
     '\r\n\t\t<PtSize k="1">8</PtSize >\r\n\t\t<BigCursor>-1</BigCursor>',
     ["PtSize     7                -> 8\n", "BigCursor  false (default)  -> true\n"]),
    ("set VeDisplayCfgParser PtSize=8", SAVED,
     "\r\n\t\t<PtSize>8</PtSize>\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<Mine>1</Mine>"
     "\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<Mine>2</Mine>",
     ["PtSize  1  -> 8  2 further copies are removed\n"]),
    ("set VeDisplayCfgParser PtMode=5", SAVED,
     SAVED[::-1].replace("\r\n\t\t<PtMode>5</PtMode>"[::-1], "", 1)[::-1], ["PtMode  5  -> 5"]),
    ("set VeDisplayCfgParser Mine=1", SAVED, None, ["VeDisplayCfgParser has no key Mine"]),
    ("set VeDisplayCfgParser PtSize=2 --dry-run", SAVED, SAVED, ["1  -> 2", "a dry run"]),
    ("set VeDisplayCfgParser PtSize=7", "<PtSize>7</PtSize>", "<PtSize>7</PtSize>",
     ["PtSize  7  as before\n", "Nothing was to be changed.\n"]),
    ("set VeSysParameterCfgParser TempPrefix=t", "", "\r\n\t\t<TempPrefix>t</TempPrefix>",
     ["sabxml: warning: hosts save TempPrefix and do not load it"]),
    ("set VeSysParameterCfgParser AllMatchRule=x", RULES, None,
     ["AllMatchRule=x is refused: the key is a structure", "shown and not set"]),
    ("get VeSysParameterCfgParser AllMatchRule", RULES, RULES,
     ['AllMatchRule  {"A":{"Value":"x"}}\n']),
    ("set VeProductCfgParser 图=a&<b>", "\r\n\t\t<A/>",
     "\r\n\t\t<A/>\r\n\t\t<图>a&amp;&lt;b&gt;</图>", ["图  (not there)  -> a&<b>\n"]),
    ("set VeProductCfgParser 1=a", "", None, ["cannot name an XML element"]),
    ("set VeProductCfgParser A=x", "<A><B/></A>", None, ["A=x is refused", "give its path"]),
    ("unset VeDisplayCfgParser PtSize BigCursor", SAVED,
     "\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<Mine>1</Mine>\r\n\t\t<PtMode>5</PtMode>"
     "\r\n\t\t<Mine>2</Mine>",
     ["PtSize     1            removed  2 further copies are removed\nBigCursor  (not there)\n"]),
    ("compact VeDisplayCfgParser", SAVED,
     "\r\n\t\t<PtSize>1</PtSize>\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<Mine>1</Mine>"
     "\r\n\t\t<Mine>2</Mine>", ["PtSize: 1", " stays, removed: 2", "3 copies of 2 keys\n"]),
    ("compact VeDisplayCfgParser --newest", SAVED,
     "\r\n\t\t<Mine>1</Mine>\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<PtSize>3</PtSize>"
     "\r\n\t\t<Mine>2</Mine>", ["PtSize: 3", " stays, removed: 1", "3 copies of 2 keys\n"]),
    ("compact VeBomcfgParser --newest", SAVED,
     "\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<PtSize>3</PtSize>\r\n\t\t<Mine>2</Mine>",
     ["4 copies of 3 keys\n"]),
    # Several nodes of one path: a load takes the first that any of them has, a save adds to the
    # first node.
    ("compact VeDisplayCfgParser --newest",
     "<PtSize>1</PtSize><PtSize>2</PtSize></G><G><PtSize>3</PtSize><PtMode>4</PtMode>",
     "<PtSize>2</PtSize></G><G><PtMode>4</PtMode>", ["2 copies of 1 key\n"]),
    ("set VeDisplayCfgParser PtMode=1 CursorSize=2", "</G><G><PtMode>4</PtMode><PtMode>5</PtMode>",
     "\r\n\t\t<CursorSize>2</CursorSize>\r\n\t</G><G><PtMode>1</PtMode>", ["PtMode"]),
    ("compact VeDisplayCfgParser", "<PtMode>4</PtMode>", "<PtMode>4</PtMode>",
     ["Nothing was to be changed.\n"]),
]

# class, key, value on the command line; its text in the file, none where the value is refused
VALUES = [
    ("VeDisplayCfgParser", "BigCursor", {"true": "-1", "false": "0", "-1": "-1", "1": None,
                                         "yes": None, "": None}),
    ("VeDisplayCfgParser", "MinTxtShowSize", {"32767": "32767", "-32768": "-32768", "+5": "5",
                                              "32768": None, "-32769": None, "5x": None, "5.0": None,
                                              " 5": None, "0x5": None, "+-5": None, "": None}),
    ("VeDisplayCfgParser", "PtSize", {"32767": "32767", "32768": None}),
    ("VeSelectCfgParser", "GripSize", {"65535": "65535", "65536": None, "-1": None}),
    ("VeDisplayCfgParser", "UCSIconSize", {"2147483647": "2147483647", "-2147483648": "-2147483648",
                                           "2147483648": None, "99999999999999999999": None}),
    ("VeDisplayCfgParser", "CursorColor", {"4294967295": "-1", "0xFF000000": "-16777216", "0xg": None,
                                           "-16777216": "-16777216", "4294967296": None, "0x-1": None,
                                           "0x": None, "-2147483649": None}),
    ("VeAutoUpdateAdminCfgParser", "Interval", {"INT_MAX": "INT_MAX", "7": "7", "int_max": None}),
    ("VeDisplayCfgParser", "GlobalLnTypeScale", {"0.25": "0.250000", "-1e3": "-1000.000000",
                                                 "1e39": None, "nan": None, "inf": None, "1,5": None}),
    ("VeDisplayCfgParser", "LWMmToPixels", {"1e22": "1" + "0" * 22 + ".000000", "1e309": None}),
    ("VeTxtParser", "DefChsFont", {"a  b": "a  b", "": "", "]]>": "]]>", " a": None, "a\n": None,
                                   "a\x01": None, "a\ufffe": None}),
    ("VeSelectCfgParser", "IncludeTypes", {"a b;2": "a b;2;", "": "", "1;;2": None, ";": None}),
    ("VeSelectCfgParser", "ExceptiveColors", {"1;0xFFFFFFFF;": "1;-1;", "1;a": None, "1, 2": None}),
]


class SettingsFiles(unittest.TestCase):
    maxDiff = 4000

    def write(self, content):
        self.file = scratch / "settings.xml"
        self.file.write_bytes(content)
        self.backup = scratch / "settings.xml.bak"
        self.backup.unlink(missing_ok=True)

    def change(self, command, class_name, *arguments):
        return run("settings", command, class_name, "settings.xml", "/S/G", *arguments)

    def test_changes(self):
        for line, before, after, texts in CHANGES:
            with self.subTest(line):
                self.write((HEAD + before + TAIL).encode())
                result, output, errors = self.change(*line.split(" "))
                self.assertEqual(0 if after is not None else 1, result, errors)
                expected = HEAD + (before if after is None else after) + TAIL
                self.assertEqual(expected, self.file.read_bytes().decode())
                for text in texts:
                    self.assertIn(text, output + errors)

    def test_values(self):
        for class_name, key, values in VALUES:
            wrong = {value for value in values if values[value] is None}
            if ON_WINDOWS:  # one that must not pass is enough there, and starts take time
                wrong = set(sorted(wrong)[:1])
            for value in wrong:
                with self.subTest(key, value=value):
                    self.write((HEAD + f"<{key}>1</{key}>" + TAIL).encode())
                    before = self.file.read_bytes()
                    # A good value beside a wrong one is not written, either.
                    good = "TxtMirrorMode=1" if class_name == "VeTxtParser" else None
                    result, output, errors = self.change(
                        "set", class_name, *filter(None, [good]), f"{key}={value}", "--backup")
                    self.assertEqual((1, ""), (result, output), errors)
                    self.assertIn("is refused: ", errors)
                    if not ON_WINDOWS:
                        self.assertIn("sabxml: settings.xml:3:11: " + key, errors)
                    self.assertEqual(before, self.file.read_bytes())
                    self.assertFalse(self.backup.exists())
            for value, text in values.items():
                if value in wrong or text is None:
                    continue
                with self.subTest(key, value=value):
                    self.write((HEAD + TAIL).encode())
                    result, _, errors = self.change("set", class_name, f"{key}={value}")
                    self.assertEqual(0, result, errors)
                    escaped = text.replace(">", "&gt;")
                    element = f"<{key}>{escaped}</{key}>" if text else f"<{key}/>"
                    self.assertEqual(HEAD + "\r\n\t\t" + element + TAIL,
                                     self.file.read_bytes().decode())

    def test_files_keep_their_encoding_and_the_backup_is_the_old_file(self):
        for encoding, declared in [("utf-8-sig", None), ("utf-16", None), ("gbk", "GBK")]:
            if ON_WINDOWS and declared:
                continue  # Wine's MSXML knows no Chinese encodings
            with self.subTest(encoding):
                prolog = f"<?xml version='1.0' encoding='{declared}'?>\r\n" if declared else ""
                old, new = ((prolog + HEAD + f"<DefChsFont>{font}</DefChsFont>" + TAIL).encode(encoding)
                            for font in ("旧", "仿宋"))
                self.write(old)
                result, output, errors = self.change("set", "VeTxtParser", "DefChsFont=仿宋",
                                                     "--backup")
                self.assertEqual((0, "DefChsFont  旧  -> 仿宋\n"), (result, output), errors)
                self.assertEqual(new, self.file.read_bytes())
                self.assertEqual(old, self.backup.read_bytes())

    @native_only
    def test_who_may_read_the_file_may_read_the_backup(self):
        self.write((HEAD + TAIL).encode())
        self.file.chmod(0o640)
        self.assertEqual(0, self.change("set", "VeTxtParser", "InCodePage=1", "--backup")[0])
        self.assertEqual(0o640, self.file.stat().st_mode & 0o777)
        self.assertEqual(0o640, self.backup.stat().st_mode & 0o777)

    @native_only
    def test_a_file_that_cannot_be_written_stays(self):
        folder = scratch / "locked"
        folder.mkdir()
        (folder / "t.xml").write_text(HEAD + TAIL, newline="")
        folder.chmod(0o555)
        if os.access(folder, os.W_OK):
            self.skipTest("permissions do not bind this user")
        arguments = ["VeTxtParser", "locked/t.xml", "/S/G", "InCodePage=1"]
        for option in ([], ["--backup"]):
            result, output, errors = run("settings", "set", *arguments, *option)
            self.assertEqual((1, ""), (result, output))
            self.assertIn("cannot write locked/t.xml", errors)
        folder.chmod(0o755)


class Walk(unittest.TestCase):
    maxDiff = 4000

    def test_samples(self):
        """The golden file is what the samples' own texts say; see that a change of it is meant."""
        result, output, _ = run("walk", APP, "--json")
        walk = json.loads(output)
        in_gb2312 = find(walk, "samples/workshop/ui/sheet_metal.xml")
        content = dict(in_gb2312)  # told at the end
        in_gb2312.clear()
        self.assertEqual((int(ON_WINDOWS),) * 2, (result, walk.pop("failed_files")))
        golden = (HERE / "workshop.txt").read_text(encoding="utf-8")
        seen = set()
        actual = "\n".join(lines_about("walk", walk, seen)) + "\n"
        if ON_WINDOWS:  # Wine's MSXML does not know GB2312
            self.assertEqual("0x84000C06", content["error"]["code"])
            golden = golden.partition("in GB2312")[0]
        else:
            actual += "\n".join(lines_about("in GB2312", content, seen)) + "\n"
        if actual != golden:
            beside = Path(tempfile.gettempdir(), "workshop.txt")
            beside.write_text(actual, encoding="utf-8")
            self.assertEqual(golden, actual, f"replace it by {beside} if that is meant")

    def test_goes_on_after_failures(self):
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

    def test_application_that_cannot_be_read(self):
        for file, reason in [("no.xml", "no.xml"), (SETTINGS, "AppTemplateID is missing")]:
            result, output, errors = run("walk", file)
            self.assertEqual((1, "1 file, 1 failed"), (result, output.splitlines()[-1]))
            self.assertIn(reason, errors)

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


class Registration(unittest.TestCase):
    """The program without the library beside it, as when both are installed elsewhere."""

    def setUp(self):
        alone = scratch / "alone"
        alone.mkdir(exist_ok=True)
        self.command = [*COMMAND[:-1], shutil.copy(COMMAND[-1], alone)]

    def test_finds_the_server(self):
        library = ["--server", LIBRARY]
        self.assertEqual(1, run("classes", command=self.command)[0])
        self.assertEqual(0, run("classes", *library, command=self.command)[0])
        self.assertEqual(0, run("classes", command=self.command, SABXML_SERVER=LIBRARY)[0])
        for scope in [], ["--user"]:
            self.assertEqual(0, run("register", *library, *scope, command=self.command)[0])
            if not (scope and ON_WINDOWS):  # Wine finds no classes of a user
                self.assertEqual(0, run("show", APP, command=self.command)[0])
            for _ in range(2):  # what is not registered can be unregistered
                self.assertEqual(0, run("unregister", *library, *scope, command=self.command)[0])
            self.assertEqual(1, run("show", APP, command=self.command)[0])

    @native_only
    def test_dry_run_changes_nothing(self):
        registry = scratch / "dry.reg"
        option = ["--registry", str(registry)]
        run("register", "--dry-run", *option)
        self.assertFalse(registry.exists())
        run("register", *option)
        run("unregister", *option)  # the roots of the registry stay
        _, output, _ = run("register", "--dry-run", *option)
        self.assertIn("+ [HKEY_CLASSES_ROOT\\SabXmlParser.VeAppParser\\CurVer] "
                      '@="SabXmlParser.VeAppParser.1"\n', output)
        run("register", *option)
        before = registry.read_bytes()
        self.assertEqual("Nothing would change.\n", run("register", "--dry-run", *option)[1])
        removed = run("unregister", "--dry-run", *option)[1]
        self.assertEqual(output.replace("+ ", "- "), removed)
        self.assertEqual(before, registry.read_bytes())

    @unittest.skipUnless(ON_WINDOWS, "Windows only")
    def test_dry_run_needs_a_file(self):
        result, _, errors = run("register", "--dry-run")
        self.assertEqual(1, result)
        self.assertIn("nothing was changed", errors)


def find(tree, file):
    """The object that tells of a file, the first time that it is named."""
    if isinstance(tree, dict):
        if tree.get("file") == file and not tree.get("repeated"):
            return tree
        tree = list(tree.values())
    if isinstance(tree, list):
        return next(filter(None, (find(element, file) for element in tree)), None)
    return None


def lines_about(name, node, seen, depth=0):
    """A JSON object as text: Member=text, Member:other value, and its own objects one level deeper.

    Where a kind of object is first seen, it has its number of members; an unset member stands where
    it is first seen and is left out from then on.
    """
    line = " " * depth + name + ("" if tuple(node) in seen else f" ({len(node)} members)")
    seen.add(tuple(node))
    inner = []
    for key, value in node.items():
        objects = value if isinstance(value, list) else [value]
        if value and isinstance(objects[0], dict):
            inner += [(key, inner_object) for inner_object in objects]
            continue
        text = json.dumps(value, ensure_ascii=False)
        place = (*node, key, text)
        if place in seen and text in ('""', "false", "[]", "-1"):
            continue
        seen.add(place)
        told = f"  {key}=" + text[1:-1] if isinstance(value, str) else f"  {key}:" + text
        if len(line) + len(told) > 100:
            yield line
            line = " " * (depth + 4)
        line += told
    yield line
    for key, inner_object in inner:
        yield from lines_about(key, inner_object, seen, depth + 1)


if __name__ == "__main__":
    unittest.main()
