#!/usr/bin/env python3
"""Blocks of the Python client that load and save settings.

usage: python_settings_test.py PACKAGE_FOLDER SAMPLES_FOLDER LIBRARY
"""

import os
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

PACKAGE, SAMPLES, LIBRARY = (Path(path).absolute() for path in sys.argv[1:4])
del sys.argv[1:4]
sys.path.insert(0, str(PACKAGE))
os.environ["SABXML_SERVER"] = str(LIBRARY)

import sabxml  # noqa: E402  (found through the path above)


class Settings(unittest.TestCase):
    DOCUMENT = """<?xml version="1.0" encoding="UTF-8"?>\r
<Settings>\r
  <Display>\r
    <CursorSize >5<!-- of the\tcross --></CursorSize>\r
    <CursorSize>7</CursorSize>\r
    <ZoomFactor/> <!-- 图 -->\r
  </Display>\r
  <Product><Paper>A3</Paper><Paper>A4</Paper><Scale unit='/>'>1</Scale></Product>\r
  <System>\r
    <AllMatchRule/>\r
  </System>\r
  <Update><Interval>30</Interval></Update><Empty/>\r
  <Bales><Zip><K>1</K></Zip><Zip><K>2</K></Zip></Bales>\r
  <Bare>a <!-- b -->\r
  </Bare>\r
</Settings>\r
"""
    RULE = "<MatchRule>{0}  <Key>bolt</Key>{0}  <Value>M6</Value>{0}</MatchRule>".format("\r\n      ")
    # group, node; what the block does; what is another text in the file then, and which
    CHANGES = [
        ("VeDisplayCfgParser", "Display", "g.CursorSize += 0", "", ""),
        ("VeDisplayCfgParser", "Display", "g.CursorSize += 4", "5<!--", "9<!--"),
        ("VeDisplayCfgParser", "Display", "g.ZoomFactor = 60", "<ZoomFactor/>", "<ZoomFactor>60</ZoomFactor>"),
        ("VeDisplayCfgParser", "Display", "g.UCSIconStyle = 2", " <!-- 图",
         "\r\n    <UCSIconStyle>2</UCSIconStyle> <!-- 图"),
        ("VeDisplayCfgParser", "Empty", "g.CursorSize = 9", "<Empty/>",
         "<Empty><CursorSize>9</CursorSize></Empty>"),
        ("VeDisplayCfgParser", "Bare", "g.CursorSize = 9", "a <!-- b -->\r\n  </Bare>",
         "a <!-- b -->\r\n    <CursorSize>9</CursorSize>\r\n  </Bare>"),
        ("VeProductCfgParser", "Product", "g.Value['Paper'] = '<纸>'", "A3", "&lt;纸&gt;"),
        ("VeProductCfgParser", "Product", "g.RemoveValue('Paper')", "<Paper>A3</Paper><Paper>A4</Paper>", ""),
        ("VeProductCfgParser", "Product", "g.Value['Scale'] = '2'; g.Value['New'] = ''", "1</Scale>",
         "2</Scale><New></New>"),
        ("VeSysParameterCfgParser", "System", "g.InsertMatchRule('bolt', 'M6')", "<AllMatchRule/>",
         f"<AllMatchRule>\r\n      {RULE}\r\n    </AllMatchRule>"),
        ("VeSysParameterCfgParser", "System", "g.TempPrefix = 'tmp'", "<AllMatchRule/>",  # never loaded
         "<AllMatchRule/>\r\n    <TempPrefix>tmp</TempPrefix>"),
        ("VeFileBaleCfgParser", "Bales", "g.GetFileBales()[1].Value['K'] = '3'", "<K>2", "<K>3"),
        ("VeFileBaleCfgParser", "Bales", "sets = g.GetFileBales(); del sets[0]", "<Zip><K>1</K></Zip><Zip>",
         "<Zip>"),
        ("VeAutoUpdateAdminCfgParser", "Update", "self.assertEqual(30, g.Interval)", "", ""),
    ]
    # group, file, path of the node; what the block does; whether it begins; what the error says
    FAILURES = [
        ("VeDisplayCfgParser", "missing.xml", "/Settings", "", False, "missing.xml: there is no such file"),
        ("VeDisplayCfgParser", ".", "/Settings", "", False, "Is a directory"),
        ("VeDisplayCfgParser", "broken.xml", "/Settings", "", False, "broken.xml:1:14: "),
        ("VeDisplayCfgParser", "file.xml", "/Settings/Nothing", "", False, "leads to no element"),
        ("VeDisplayCfgParser", "file.xml", "/Settings/[", "", False, "not well-formed"),
        ("VeAppParser", "file.xml", "/Settings", "", False, "VeAppParser is no settings group"),
        ("VeDisplayCfgParser", "nested.xml", "/Settings", "g.CursorSize = 9", True,
         "CursorSize in /Settings would not be loaded"),
        ("VeAutoUpdateAdminCfgParser", "file.xml", "/Settings/Update", "g.Interval = 3", True, "read-only"),
        ("VeSysParameterCfgParser", "file.xml", "/Settings/System", "g.DefVisualStyle = 'x'", True,
         "does not save DefVisualStyle, whose change from '' to 'x' would"),
        ("VeProductCfgParser", "file.xml", "/Settings/Product", "g.Value['a b'] = ''", True, '"a b" cannot'),
    ]

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))

    def test_changes(self):
        for encoding in "UTF-8", "UTF-16", "GBK":
            document = self.DOCUMENT.replace("UTF-8", encoding)
            for group, node, statements, old, new in self.CHANGES:
                with self.subTest(f"{encoding}: {statements}"):
                    file = self.folder / "file.xml"
                    file.write_bytes(document.encode(encoding))
                    file.chmod(0o640)
                    os.utime(file, (0, 0))
                    with sabxml.settings(group, file, f"/Settings/{node}") as g:
                        exec(statements, {"self": self, "g": g})
                    if old:
                        self.assertEqual(1, document.count(old))
                    self.assertEqual(document.replace(old, new) if old else document,
                                     file.read_bytes().decode(encoding))
                    self.assertEqual((0o640, not old), (file.stat().st_mode & 0o777, not file.stat().st_mtime))
                    self.assertEqual([file], list(self.folder.iterdir()))

    def test_failures(self):
        files = {"file.xml": self.DOCUMENT, "broken.xml": "<Settings><a></Settings>",
                 "nested.xml": "<Settings><CursorSize>5<b/></CursorSize></Settings>"}
        for group, name, node, statements, begins, text in self.FAILURES:
            with self.subTest(text):
                for other, content in files.items():
                    (self.folder / other).write_text(content, encoding="utf-8", newline="")
                file, begun = self.folder / name, []
                with self.assertRaises(sabxml.Error) as caught:
                    with sabxml.settings(group, file, node) as g:
                        begun.append(g)
                        exec(statements, {"g": g})
                        before = file.read_bytes()
                self.assertIn(text, str(caught.exception))
                self.assertEqual(begins, bool(begun))
                if begins:
                    self.assertEqual(before, file.read_bytes())

    def test_blocks_in_turn(self):
        file = Path(shutil.copy(SAMPLES / "settings.xml", self.folder))
        for _ in range(2):  # the second time nothing is another
            for target in "/Settings/Apprentice", None:
                with sabxml.settings("VeDisplayCfgParser", file, "/Settings/Display", target) as display:
                    display.CursorSize = 9
                    # Another program changes the file meanwhile.
                    file.write_bytes(file.read_bytes().replace(b">60</Zoom", b">61</Zoom"))
            with sabxml.settings("VeFilePathCfgParser", file, "/Settings/Paths") as paths:
                if not paths.get_DCHistoryCount():
                    paths.put_DCBrowseHistory("C:\\d")
            with self.assertRaises(KeyError):
                with sabxml.settings("VeDisplayCfgParser", file, "/Settings/Display") as display:
                    display.CursorSize = 10
                    raise KeyError
            content = file.read_text(encoding="utf-8")
            self.assertEqual((2, 2, 2), tuple(map(content.count, (
                "<CursorSize>9</CursorSize>", "<CursorSize>", "<ZoomFactor>61</ZoomFactor>"))))
        self.assertIn("<History>C:\\d</History>", (self.folder / "BrowseHistory.xml").read_text())


if __name__ == "__main__":
    unittest.main()
