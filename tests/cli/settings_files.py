"""What the commands about settings do to files; command_line_test.py runs it."""

import json
import os
import subprocess
import unittest
from concurrent.futures import ThreadPoolExecutor

from program import COMMAND, ON_WINDOWS, environment, native_only, run, scratch

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
    ("set VeTxtParser DefTxtHei=0.1234567", "", "\r\n\t\t<DefTxtHei>0.123457</DefTxtHei>",
     ["warning: DefTxtHei=0.1234567 loses digits: it is written as 0.123457"]),
    ("set VeTxtParser DefTxtHei=+25e-1", "", "\r\n\t\t<DefTxtHei>2.500000</DefTxtHei>",
     ["-> 2.500000\n"]),
    # What a load gives: all decimals, 16 bits of a wide short, the default of what is only saved.
    *((f"get {group} {key}", f"<{key}>{text}</{key}>", f"<{key}>{text}</{key}>", [f"{key}  {told}\n"])
      for group, key, text, told in [
          ("VeTxtParser", "DefTxtHei", "0.1234567", "0.1234567"),
          ("VeDisplayCfgParser", "GlobalLnTypeScale", "1e-9", "1e-09"),
          ("VeDisplayCfgParser", "ZoomFactor", "99999", "-31073"),
          ("VeSysParameterCfgParser", "CmdInputHistoryMax", "7", "0")]),
    ("set VeSysParameterCfgParser CmdInputHistoryMax=8", "<CmdInputHistoryMax>7</CmdInputHistoryMax>",
     "<CmdInputHistoryMax>8</CmdInputHistoryMax>", ["7  -> 8\n"]),
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
            # A good value beside a wrong one is not written, either.
            good = ["TxtMirrorMode=1"] if class_name == "VeTxtParser" else []
            wrong = sorted(value for value in values if values[value] is None)
            for value, text in values.items():
                if ON_WINDOWS and value in wrong[1:]:  # one is enough there, and starts take time
                    continue
                with self.subTest(key, value=value):
                    escaped = (text or "").replace(">", "&gt;")
                    element = f"<{key}>{escaped}</{key}>" if text else f"<{key}/>"
                    before = f"<{key}>1</{key}>" if text is None else ""
                    after = before if text is None else "\r\n\t\t" + element
                    self.write((HEAD + before + TAIL).encode())
                    result, output, errors = self.change(
                        "set", class_name, *(good + ["--backup"] if text is None else []),
                        f"{key}={value}")
                    self.assertEqual(HEAD + after + TAIL, self.file.read_bytes().decode())
                    self.assertEqual(int(text is None), result, errors)
                    if text is None:
                        place = "sabxml: settings.xml:3:11: " + key
                        self.assertRegex(errors, f"^{place}(.|\n)* is refused: ")
                        self.assertEqual(("", False), (output, self.backup.exists()))

    def test_files_keep_their_encoding_and_the_backup_is_the_old_file(self):
        for encoding, declared in [("utf-8-sig", None), ("utf-16", None), ("gbk", "GBK")]:
            with self.subTest(encoding):
                prolog = f"<?xml version='1.0' encoding='{declared}'?>\r\n" if declared else ""
                old, new = ((prolog + HEAD + f"<DefChsFont>{font}</DefChsFont>" + TAIL).encode(encoding)
                            for font in ("旧", "仿宋"))
                self.write(old)
                if not ON_WINDOWS:
                    self.file.chmod(0o640)
                result, output, errors = self.change("set", "VeTxtParser", "DefChsFont=仿宋",
                                                     "--backup")
                self.assertEqual((0, "DefChsFont  旧  -> 仿宋\n"), (result, output), errors)
                self.assertEqual(new, self.file.read_bytes())
                self.assertEqual(old, self.backup.read_bytes())
                # Who may read the file may read the backup.
                self.assertEqual(self.file.stat().st_mode, self.backup.stat().st_mode)
                self.assertTrue(ON_WINDOWS or self.backup.stat().st_mode & 0o777 == 0o640)

    def test_a_dump_is_loaded_as_it_was(self):
        sample = "samples/workshop/settings.xml"
        blocks = ["VeSysParameterCfgParser:/Settings/System", "VeDisplayCfgParser:/Settings/Display",
                  "VeSelectCfgParser:/Settings/Selection", "VeTxtParser:/Settings/Text",
                  "VeAutoUpdateAdminCfgParser:/Settings/Update", "VeFilePathCfgParser:/Settings/Paths",
                  "VeProductCfgParser:/Settings/Text"]

        def dump(file):
            class_name, node = blocks[0].split(":")
            return run("settings", "dump", class_name, file, node, *blocks[1:], "--json")[1]

        def content(text):
            return [{key: (value["value"], [copy["text"] for copy in value["copies"]])
                     for key, value in block["values"].items()} for block in json.loads(text)]

        before = dump(sample)
        self.assertGreater(sum(bool(copies) for block in content(before)
                               for _, copies in block.values()), 30)
        (scratch / "dump.json").write_text(before, encoding="utf-8")
        (scratch / "new.xml").unlink(missing_ok=True)
        refused = run("settings", "load", "new.xml", "dump.json")
        self.assertEqual((1, False), (refused[0], (scratch / "new.xml").exists()))
        result, _, errors = run("settings", "load", "new.xml", "dump.json", "--create")
        self.assertEqual(0, result, errors)
        # Other values, further ones and further copies go; what is not of the dump stays.
        self.assertEqual(content(before), content(dump("new.xml")))
        old = (scratch / "new.xml").read_text(encoding="utf-8")
        (scratch / "new.xml").write_text(
            old.replace("<Display>", "<Display><PtSize>9</PtSize><Mine/><BigCursor>0</BigCursor>"),
            encoding="utf-8")
        self.assertEqual(0, run("settings", "load", "new.xml", "dump.json", "--backup")[0])
        self.assertEqual(content(before), content(dump("new.xml")))
        self.assertIn("<Mine/>", (scratch / "new.xml").read_text(encoding="utf-8"))
        for wrong in ('{"class": "VeTxtParser"}', '{"class": "VeTxtParser", "node": "/Settings/Text",'
                      ' "values": {"InCodePage": [1]}}', '{"class": "VeTxtParser", "node": "/Settings/Text",'
                      ' "values": {"InCodePage": 1, "OutCodePage": "x"}}'):
            (scratch / "wrong.json").write_text(wrong)
            before = (scratch / "new.xml").read_bytes()
            self.assertEqual(1, run("settings", "load", "new.xml", "wrong.json")[0], wrong)
            self.assertEqual(before, (scratch / "new.xml").read_bytes())
        (scratch / "wrong.json").write_text("[\n1")
        self.assertIn("wrong.json: this is no JSON: line 2, column 2: ",
                      run("settings", "load", "new.xml", "wrong.json")[2])

    def test_several_blocks_are_one_save(self):
        self.write((HEAD + TAIL).encode())
        for value, code in ("x", 1), ("7", 0):
            before = self.file.read_bytes()
            result, *_ = self.change("set", "VeDisplayCfgParser", "PtSize=1", "VeTxtParser:/S/New/Text",
                                     "TxtMirrorMode=" + value, "--create")
            self.assertEqual((code, code == 1), (result, before == self.file.read_bytes()))
        text = self.file.read_bytes().decode()
        self.assertIn("<PtSize>1</PtSize>", text)
        self.assertRegex(text, r"<New>\s*<Text>\s*<TxtMirrorMode>7</TxtMirrorMode>\s*</Text>\s*</New>")

    @native_only
    def test_editor(self):
        editor = scratch / "editor"
        editor.write_text('#!/bin/sh\nsed -i -e "$EDITS" "$2"\n')
        editor.chmod(0o755)
        for edits, code, after, texts in [
            ("1d", 0, SAVED, ["Nothing was to be changed"]),
            ("s/^PtSize=1/PtSize=x/; /^PtMode/d", 1, SAVED, ["PtSize=x is refused", "what you wrote is in "]),
            ("s/^PtMode=5/PtMode/", 1, SAVED, ["write KEY=VALUE"]),
            ("d", 1, SAVED, ["is empty, so nothing was changed"]),
            ("s/^#BigCursor=false/BigCursor=true/; /^PtSize/d", 0,
             "\r\n\t\t<PtMode>5</PtMode>\r\n\t\t<Mine>1</Mine>\r\n\t\t<PtMode>5</PtMode>"
             "\r\n\t\t<Mine>2</Mine>\r\n\t\t<BigCursor>-1</BigCursor>", ["BigCursor  false (default)"]),
        ]:
            with self.subTest(edits):
                self.write((HEAD + SAVED + TAIL).encode())
                result, output, errors = run(
                    "settings", "edit", "VeDisplayCfgParser", "settings.xml", "/S/G",
                    VISUAL=f"{editor} --wait", EDITS=edits, TMPDIR=str(scratch))
                self.assertEqual((code, HEAD + after + TAIL), (result, self.file.read_bytes().decode()))
                for text in texts:
                    self.assertIn(text, output + errors)
                kept = list(scratch.glob("sabxml-*.txt"))
                self.assertEqual(code if edits != "d" else 0, len(kept))
                for file in kept:
                    file.unlink()

    def test_watch(self):
        self.write((HEAD + SAVED + TAIL).encode())
        with subprocess.Popen([*COMMAND, "settings", "watch", "VeDisplayCfgParser", "settings.xml",
                               "/S/G", "PtSize", "VeTxtParser:/S/H", "--changes", "2", "--json"],
                              cwd=scratch, env=environment(), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as watch:
            # When it has begun to watch cannot be seen, so the file goes on changing.
            size = 1
            while watch.poll() is None and size < 200:
                size += 1
                self.change("set", "VeDisplayCfgParser", f"PtSize={size}", "PtMode=9")
            lines = [json.loads(line) for line in watch.stdout]
            self.assertIn(b"/S/H leads to no element", watch.stderr.read())
        self.assertEqual((0, ["PtSize"] * 2), (watch.returncode, [line["key"] for line in lines]))
        self.assertTrue(all(line["before"] < line["after"] <= size for line in lines), lines)

    def test_commands_at_once_lose_no_key(self):
        self.write((HEAD + TAIL).encode())
        keys = [f"Key{i}" for i in range(12)]
        with ThreadPoolExecutor(len(keys)) as writers:
            results = list(writers.map(
                lambda key: self.change("set", "VeProductCfgParser", key + "=1"), keys))
        self.assertEqual([0] * len(keys), [result for result, *_ in results], results)
        written = self.file.read_bytes().decode()
        self.assertEqual([], [key for key in keys if f"<{key}>1</{key}>" not in written])
        self.assertEqual([self.file], list(self.file.parent.glob("*settings.xml*")))

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
        result, output, errors = run("settings", "edit", *arguments[:3], VISUAL="true")
        self.assertEqual((0, "Nothing was to be changed.\n", ""), (result, output, errors))
        folder.chmod(0o755)
