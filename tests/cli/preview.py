"""sabxml preview from outside; command_line_test.py runs these tests, tests/preview those of the page."""

import unittest

from program import APP, run, scratch

UI = "samples/workshop/ui/drawing.xml"


class Preview(unittest.TestCase):
    def test_files(self):
        self.assertEqual((0, "application.preview.html: 4 user interfaces, 113 elements, 16 pictures; "
                             "0 errors, 0 warnings\n", ""), run("preview", APP))
        text = (scratch / "application.preview.html").read_text(encoding="utf-8")
        self.assertTrue(text.startswith("<!DOCTYPE html>") and text.endswith("</html>\n"))
        self.assertNotIn("<script", text)
        code, page, err = run("preview", UI, "--images", "samples", "-o", "-")
        self.assertEqual((0, 0, ""), (code, page.count("base64"), err))
        self.assertIn(">draw16.png<", page)

    def test_refusals(self):
        (scratch / "folder").mkdir(exist_ok=True)
        for name, text in {"open.xml": "<UI>\n <A>", "alone.xml": "<Environment><UIPath>no.xml</UIPath></Environment>",
                           "ui.xml": "<UI/>"}.items():
            (scratch / name).write_text(text)
        refused = "name a user interface, an environment or an application"
        for arguments, code, *words in [
                (["missing.xml"], 1, "missing.xml: ", refused),
                (["folder"], 1, "folder: this is a folder", refused),
                (["samples/workshop/settings.xml"], 1, "settings.xml:3:1: <Settings>", refused),
                (["samples/workshop/commands/draw.xml"], 1, "draw.xml:2:1: <Cmd>", refused),
                (["samples/workshop/text_templates/title_block.txt"], 1, "this is no XML", refused),
                (["open.xml"], 1, "open.xml:2:5: "),
                (["alone.xml"], 1, "no user interface that can be read", "alone.xml:1:22: ", "no.xml"),
                (["ui.xml", "-o", "folder"], 1, "folder: ", "with -o"),
                (["ui.xml", "-o", "none/x.html"], 1, "none/x.html", "with -o"),
                (["ui.xml", "-o", "ui.xml"], 1, "ui.xml: the page is made from this file", "with -o"),
                (["ui.xml", "--images", "none"], 1, "--images none: there is no such folder"),
                (["ui.xml", "--app-mode", "1x"], 2, "--app-mode takes a whole number, not 1x"),
                (["-", "--watch"], 2, "cannot be watched"),
                (["ui.xml", "-o", "-", "--open"], 2, "cannot be opened")]:
            result, out, err = run("preview", *arguments)
            self.assertEqual((code, ""), (result, out), arguments)
            for word in words:
                self.assertIn(word, err)
        self.assertEqual("<UI/>", (scratch / "ui.xml").read_text())
