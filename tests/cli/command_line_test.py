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

SAMPLES, LIBRARY, *COMMAND = sys.argv[1:]
del sys.argv[1:]
HERE = Path(__file__).parent
ON_WINDOWS = "with_wine" in COMMAND[0]
native_only = unittest.skipIf(ON_WINDOWS, "POSIX only")

APP = "samples/workshop/application.xml"
SETTINGS = "samples/workshop/settings.xml"
UPDATE = ["VeAutoUpdateAdminCfgParser", SETTINGS, "/Settings/Update"]

# arguments; exit code; what the output holds; what the error output holds
CASES = [
    # The command line itself.
    (["--version"], 0, ["sabxml "], []),
    (["--help"], 0, ["walk", "Exit codes:", "SABXML_SERVER"], []),
    (["show", "--help"], 0, ["Examples:"], []),
    (["walk", "--help"], 0, ["backslashes"], []),
    (["register", "--help"], 0, ["SABCOM_REGISTRY"], []),
    ([], 2, [], ["sabxml: A subcommand is required"]),
    (["shew"], 2, [], ["sabxml: ", "Try: sabxml --help"]),
    (["show"], 2, [], ["FILE is required"]),
    (["get", "VeAppParser", "x"], 2, [], ["NODEPATH is required"]),
    (["show", APP, "--colour", "pink"], 2, [], ["--colour"]),
    (["describe"], 2, [], ["name a class, or give --all"]),

    # Descriptors.
    (["show", APP], 0, ["AppID                   WORKSHOP_2D\n", "    [1]  templates\\assembly.xml\n",
                        "LocalName          常规\n", "  OnlineCloud\n"], []),
    (["show", "samples/workshop/templates/part.xml"], 0,
     ["VeTmplParser\n", "    [1]  tidy-up\n", "      FilterName  交换文件\n"], []),
    (["show", "samples/workshop/templates/assembly.xml"], 0, ["PreServiceCLSIDs   (none)\n"], []),
    (["show", "samples/workshop/modules/drawing.xml"], 0, ["ModuleTitle        绘图\n"], []),
    (["show", "samples/workshop/environments/unfolding.xml"], 0, ["  DefaultPanel\n"], []),
    (["show", "samples/workshop/commands/file.xml"], 0,
     ["IsGroup          true\n", "SystemCommand    true\n"], []),
    (["show", "samples/workshop/ui/assembly.xml"], 0, ["Text         放置零件…\n"], []),
    (["show", "kinds/utf16be.xml"], 0, ["CmdFileID          字\n"], []),
    (["show", "kinds/prolog.xml"], 0, ["VeCmdParser\n"], []),
    (["show", "kinds/control.xml"], 0, ["  CmdFileID          a\\n\\tb\\x9b\n"], []),
    (["show", "kinds/prefix.xml"], 1, [], ["Cmd/Identify is missing", "(0x84000C04: "]),
    (["show", "kinds/empty.xml"], 1, [], ["kinds/empty.xml: this is no XML file"]),
    (["show", "kinds"], 1, [], ["kinds: this is a folder"]),
    (["show", "no.xml", APP], 1, ["WORKSHOP_2D"], ["sabxml: no.xml: No such file or directory"]),
    (["show", SETTINGS], 1, [], ["the document element Settings is that of no descriptor",
                                 "sabxml get CLASS"]),
    (["show", "kinds/broken.xml"], 1, [],
     ["kinds/broken.xml:3:", "(0x84000C06: the document could not be loaded)"]),

    # Settings.
    (["get", *UPDATE], 0, ["DisableHttp  true\nReadOnly     false\nInterval     30\n"
                           "Server       updates.workshop.example\n"], []),
    (["get", *UPDATE, "server", "INTERVAL"], 0,
     ["Server    updates.workshop.example\nInterval  30\n"], []),
    (["get", *UPDATE[:2], "/Settings/Apprentice/Update", "--json"], 0,
     ['{\n  "DisableHttp": false,\n  "ReadOnly": true,\n  "Interval": 2147483647,\n'
      '  "Server": ""\n}\n'], []),
    (["get", *UPDATE, "Colour"], 1, [], ["VeAutoUpdateAdminCfgParser has no value named Colour"]),
    (["get", "VeAutoUpdateAdminCfgParser", "kinds/broken.xml", "/x"], 1, [], ["kinds/broken.xml:3:"]),
    (["get", "VeAutoUpdateAdminCfgParser", "no.xml", "/x"], 1, [], ["no.xml: "]),
    (["get", "VeAppParser", SETTINGS, "/x"], 1, [], ["VeAppParser is no class for settings"]),
    (["get", "VeNothing", SETTINGS, "/x"], 1, [],
     ["the server has no class named VeNothing", "sabxml classes"]),

    # Classes.
    (["classes"], 0, ["VeAppParser ", "IVePrsAccelColl\n"], []),
    (["describe", "veappparser"], 0,
     ["ConfigurationPath: BSTR", "5  method GetTmplatePaths(): SAFEARRAY(BSTR)",
      "6  method GetConfigurations(): IVePrsConfigColl*"], []),
    (["describe", "VePrsAccelColl"], 0,
     ["GetNext([in, out] LONG_PTR* io_pPos): IVePrsAccel*",
      "AddTail([in] IVePrsAccel* i_pItem, [in, out, optional] LONG_PTR* o_lpPosition)"], []),
    (["describe", "VeNothing"], 1, [], ["the server has no class named VeNothing"]),

    # The server.
    (["classes", "--server", "no-such-library"], 1, [],
     ["the server's library cannot be loaded: no-such-library", "Name it with --server"]),
]


def setUpModule():
    """Everything runs in a scratch folder with a copy of the samples and files that are wrong."""
    global scratch
    scratch = Path(tempfile.mkdtemp(prefix="sabxml-test-"))
    if ON_WINDOWS:  # that not every command starts Wine anew
        subprocess.run([*COMMAND[:2], "wineserver", "-p30"], check=True)
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
        "broken.xml": b"<Application>\n  <Identify>\n</Application>",
    }.items():
        (kinds / name).write_bytes(content)
    broken = scratch / "broken"
    shutil.copytree(scratch / "samples/workshop", broken)
    (broken / "commands").rename(broken / "Commands")
    (broken / "Commands/draw.xml").unlink()
    (broken / "modules/sheet_metal.xml").write_text("<Module><Identify/></Module>")


def tearDownModule():
    shutil.rmtree(scratch)


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


class CommandLine(unittest.TestCase):
    maxDiff = 4000

    def test_cases(self):
        for arguments, code, in_output, in_errors in CASES:
            if ON_WINDOWS and any("kinds/broken.xml:3:" in text for text in in_errors):
                in_errors = ["kinds/broken.xml"]  # MSXML counts otherwise
            if ON_WINDOWS and "No such file or directory" in "".join(in_errors):
                in_errors = ["no.xml: "]
            with self.subTest(" ".join(arguments)):
                result, output, errors = run(*arguments)
                self.assertEqual(code, result, errors)
                for text in in_output:
                    self.assertIn(text, output)
                for text in in_errors:
                    self.assertIn(text, errors)
                self.assertEqual(bool(in_errors), bool(errors), errors)

    def test_every_class_is_described_alike_on_all_platforms(self):
        _, output, _ = run("describe", "--all", "--json")
        classes = {described["name"]: described for described in json.loads(output)}
        accelerator = classes["VePrsAccel"]
        self.assertEqual("IVePrsAccel", accelerator["interface"])
        members = accelerator["members"]
        self.assertEqual([(id, kind, name)
                          for id, name in enumerate(["Command", "Key", "Ctrl", "RibbonKey"], 1)
                          for kind in ("get", "put")],
                         [(m["id"], m["kind"], m["name"]) for m in members])
        # Wine reads the Chinese of a type library as if it were Latin-1.
        helps = [m["help"] for m in classes["VeAutoUpdateAdminCfgParser"]["members"]]
        self.assertEqual(not ON_WINDOWS, any("自动更新" in text for text in helps))

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


class Walk(unittest.TestCase):
    maxDiff = 4000

    def test_samples(self):
        """The golden file is what the samples' own texts say; see that a change of it is meant."""
        result, output, _ = run("walk", APP, "--json")
        expected = json.loads((HERE / "workshop.json").read_text(encoding="utf-8"))
        actual = json.loads(output)
        if ON_WINDOWS:
            self.assertEqual(1, result)  # Wine's MSXML does not know GB2312
            unread = find(actual, "samples/workshop/ui/sheet_metal.xml")
            self.assertEqual("0x84000C06", unread["error"]["code"])
            unread.clear()
            find(expected, "samples/workshop/ui/sheet_metal.xml").clear()
            self.assertEqual(1, actual.pop("failed_files"))
            expected.pop("failed_files")
        else:
            self.assertEqual(0, result)
        self.assertEqual(expected, actual)

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
        self.assertEqual(0, run("register", *library, command=self.command)[0])
        self.assertEqual(0, run("show", APP, command=self.command)[0])
        for _ in range(2):  # what is not registered can be unregistered
            self.assertEqual(0, run("unregister", *library, command=self.command)[0])
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


if __name__ == "__main__":
    unittest.main()
