"""sabxml check, schema, find and explain from outside; command_line_test.py runs these tests."""

import json
import shutil
import subprocess
import unittest

from program import APP, run, scratch

UI = "samples/workshop/ui/drawing.xml"


class Authoring(unittest.TestCase):
    def setUp(self):
        (scratch / "a").mkdir(exist_ok=True)
        (scratch / "a/c.xml").write_bytes("<Cmd>\r\n <Identify>C</Identify>\n <Comands>\n  <!-- 字 -->"
                                          "<group>G</group>\n </Comands>\n</Cmd>\n".encode("gb2312"))
        text = (scratch / "a/c.xml").read_bytes()
        (scratch / "a/c.xml").write_bytes(b'<?xml version="1.0" encoding="GB2312"?>\n' + text)

    def check(self, *arguments):
        code, out, err = run("check", "a/c.xml", "--json", *arguments)
        return code, json.loads(out)

    def test_the_sample_is_clean(self):
        self.assertEqual(0, run("check", APP, "--fail-on", "warning")[0])

    def test_a_file_has_many_spellings(self):
        copy = scratch / "a/workshop"
        shutil.copytree(scratch / "samples/workshop", copy, dirs_exist_ok=True)
        (copy / "application.xml").write_bytes((copy / "application.xml").read_bytes().replace(
            b">templates", b">..\\workshop\\templates", 1))
        app = "a/workshop/application.xml"
        for other in (copy / "application.xml", "a/../" + app, "a/workshop/templates/part.xml",
                      "a/workshop/commands/../commands/file.xml"):
            self.assertIn("\n18 files: 0 errors", run("check", app, str(other))[1], other)

    def test_json(self):
        code, found = self.check()
        self.assertEqual((1, 1, 2, 0),
                         (code, found["files"], found["errors"], found["warnings"]))
        first = found["findings"][0]
        self.assertIn("<Comands>", first.pop("message"))
        self.assertEqual({"file": "a/c.xml", "line": 4, "column": 2, "end_line": 4, "end_column": 10,
                          "severity": "error", "rule": "unknown-element",
                          "suggestion": "<Commands>", "related": []}, first)

    def test_sarif(self):
        log = json.loads(run("check", "a/c.xml", UI, "--format", "sarif")[1])
        self.assertEqual("2.1.0", log["version"])
        driver, results = log["runs"][0]["tool"]["driver"], log["runs"][0]["results"]
        self.assertEqual({"name", "version", "rules"}, set(driver))
        for result in results:
            self.assertEqual(result["ruleId"], driver["rules"][result["ruleIndex"]]["id"])
            self.assertIn(result["level"], ("error", "warning", "note"))
            self.assertTrue(result["message"]["text"])
            place = result["locations"][0]["physicalLocation"]
            self.assertNotRegex(place["artifactLocation"]["uri"], r"^/|\\|:")
            region = place["region"]
            self.assertLess((region["startLine"], region["startColumn"]),
                            (region["endLine"], region["endColumn"]))
        self.assertEqual(2, sum(result["level"] == "error" for result in results))

    def test_choices(self):
        rules = ["--severity", "unknown-element=warning"]
        self.assertEqual(0, self.check(*rules)[0])
        self.assertEqual(1, self.check(*rules, "--fail-on", "warning")[0])
        self.assertEqual(0, self.check("--fail-on", "never")[0])
        self.assertEqual(0, run("check", "--disable", "unknown-element", "a/c.xml")[0])
        (scratch / "a/.sabxml-check").write_text("# ours\ndisable unknown-element\n")
        self.assertEqual(0, self.check()[0])
        (scratch / "a/.sabxml-check").write_text("disable unknown-elements\n")
        self.assertIn("did you mean unknown-element?", run("check", "a/c.xml")[2])
        (scratch / "a/.sabxml-check").unlink()
        self.assertEqual(0, self.check("--baseline", "a/old", "--write-baseline")[0])
        (scratch / "a/c.xml").write_bytes((scratch / "a/c.xml").read_bytes()
                                          .replace(b"</Identify>", b"</Identify><Other/>"))
        self.assertEqual(1, len(self.check("--baseline", "a/old")[1]["findings"]))
        for arguments in (["a/none.xml"], ["a/c.xml", "--host-ids", "no"], [], ["a/c.xml", "--dry-run"],
                          ["a/c.xml", "--json", "--format", "sarif"],
                          ["a/c.xml", "--severity", "bad-flag"], ["--explain", "bad"],
                          ["a/c.xml", "--settings", "VeTxtParser"]):
            self.assertEqual(2, run("check", *arguments)[0], arguments)

    def test_options_name_their_place(self):
        for text, message in (
                ("disable unknown-elements\n", "1: there is no rule unknown-elements"),
                ("# ours\r\nsettings\r\n", "2: settings has no value"),
                ("\nseverity bad-flag=loud", "2: --severity bad-flag=loud: write"),
                ("settings VeTxtPaser:/S", "1: there is no settings group VeTxtPaser"),
                ("\nsettings VeTxtParser:/S[", "2: the node path /S[: the path is not"),
                ("disable bad-guid\nhost-ids no.ids", "2: a/no.ids: "),
                ("fail-on pigs", "1: --fail-on takes"), ("baseline no.txt", "1: a/no.txt: ")):
            (scratch / "a/.sabxml-check").write_bytes(text.encode())
            code, _, err = run("check", "a/c.xml")
            self.assertEqual(2, code, text)
            self.assertIn("a/.sabxml-check:" + message, err)
        (scratch / "a/.sabxml-check").write_text("host-ids host.ids")
        for line, message in (("menuz X", "2: there is no kind menuz; did you mean menu?"),
                              ("command X Y", "2: an identifier and a kind are two words"),
                              ("X Y", "2: there is no kind X"), ("command", ""), ("X menus", "")):
            (scratch / "a/host.ids").write_text("OTHER # comment\n" + line)
            self.assertIn(message and "a/host.ids:" + message, run("check", "a/c.xml")[2])
            self.assertEqual(2 if message else 1, run("check", "a/c.xml")[0], line)
        (scratch / "a/.sabxml-check").unlink()
        (scratch / ".sabxml-check").write_text("disable nothing")
        self.assertIn(" .sabxml-check:1: ", run("check", "-")[2])
        (scratch / ".sabxml-check").unlink()

    def test_a_baseline_is_the_same_from_every_folder(self):
        (scratch / "a/b").mkdir()
        (scratch / "a/b/d.xml").write_text(
            "<Application><Templates><Template><Path>missing.xml</Path>"
            "</Template></Templates></Application>")
        spellings = ("a/b/d.xml", "a/../a/b/d.xml", str(scratch / "a/b/d.xml"))
        for file in spellings:
            self.assertEqual(0, run("check", file, "--baseline", "a/old", "--write-baseline")[0])
            self.assertIn("b/d.xml: there is no file b/missing.xml [", (scratch / "a/old").read_text())
            for other in spellings:
                self.assertEqual(0, run("check", other, "--baseline", str(scratch / "a/old"))[0])
        (scratch / "a/older").write_text("\n".join(  # as printed
            line.split(": ", 1)[0].split(":")[0] + ": " + line.split(": ", 2)[2]
            for line in run("check", "a/b/d.xml")[1].splitlines()[:-1]))
        self.assertEqual(0, run("check", "a/b/d.xml", "--baseline", "a/older")[0])

    def test_fix(self):
        before = (scratch / "a/c.xml").read_bytes()
        code, diff, _ = run("check", "a/c.xml", "--fix", "--dry-run")
        self.assertIn("\n- <Comands>\n+ <Commands>\n", diff)
        self.assertEqual((0, before), (code, (scratch / "a/c.xml").read_bytes()))
        self.assertEqual(0, run("check", "a/c.xml", "--fix")[0])
        self.assertEqual(before.replace(b"Comands", b"Commands").replace(b"group>", b"Group>"),
                         (scratch / "a/c.xml").read_bytes())
        self.assertIn(", 0 places fixed", run("check", "a/c.xml", "--fix")[1])

    def test_letter_case_is_fixed(self):
        app, ui = "a/case/application.xml", scratch / "a/case/ui/drawing.xml"
        shutil.copytree(scratch / "samples/workshop", scratch / "a/case")
        right = ui.read_bytes()
        ui.write_bytes(right.replace(b"WK_LINE<", b"wk_line<").replace(b"button32", b"Button32"))
        self.assertIn(", 5 places fixed", run("check", app, "--fix")[1])
        self.assertEqual(right, ui.read_bytes())
        (scratch / app).write_bytes((scratch / app).read_bytes().replace(b"part.xml", b"parts.xml"))
        self.assertIn("did you mean templates\\part.xml? [file-not-found]", run("check", app)[1])

    @unittest.skipUnless(shutil.which("xmllint"), "xmllint is not installed")
    def test_schemas(self):
        self.assertEqual(0, run("schema", "--out", "a/schemas")[0])
        self.assertTrue((scratch / "a/schemas/catalog.xml").exists())
        folders = {"templates": "template", "modules": "module", "environments": "environment",
                   "commands": "commands", "ui": "user-interface", "standards": "standards"}
        files = [("application", scratch / APP)] + [
            (kind, file) for folder, kind in folders.items()
            for file in (scratch / "samples/workshop" / folder).glob("*.xml")]
        for kind, file in files:
            lint = ["xmllint", "--noout", "--schema", scratch / f"a/schemas/{kind}.xsd"]
            self.assertEqual(0, subprocess.run([*lint, file], capture_output=True).returncode, file)
        wrong = scratch / "a/wrong.xml"
        for bad in ("<UI><RibonBar/></UI>", "<UI><IMenu><Has>yes</Has></IMenu></UI>"):
            wrong.write_text(bad)
            lint = ["xmllint", "--noout", "--schema", scratch / "a/schemas/user-interface.xsd"]
            self.assertEqual(3, subprocess.run([*lint, wrong], capture_output=True).returncode)

    def test_find_and_explain(self):
        found = json.loads(run("find", "PANEL_DRAW", APP, "--json")[1])
        self.assertEqual([["panel"], ["panel"]], [[use["kind"] for use in found[side]]
                                                  for side in ("definitions", "references")])
        self.assertEqual(1, run("find", "NOTHING", APP)[0])
        self.assertIn("; did you mean PANEL_DRAW?", run("find", "panel_draw", APP)[2])
        shutil.copytree(scratch / "samples/workshop", scratch / "a/damaged")
        (scratch / "a/damaged/ui/drawing.xml").write_text("<UI>")
        for id, file, code, message in (
                ("X", "kinds/broken.xml", 2, "sabxml: kinds/broken.xml:3:1: "),
                ("WK_LINE", "a/damaged/application.xml", 0, "warning: a/damaged/ui/drawing.xml:1:5: "),
                ("NOTHING", "a/damaged/application.xml", 2, "NOTHING in the files that can be read")):
            result, _, errors = run("find", id, file)
            self.assertEqual(code, result, errors)
            self.assertIn(message, errors)
        self.assertIn("ContextRibbonElement (user", run("explain", "RibbonPanel", "UI")[1])
        for name, place in (("ZoomFactor", "VeDisplayCfgParser"), ("StyleID", "VisualStyle"),
                            ("TitleBlock", "text template")):
            self.assertIn(place, run("explain", name)[1])
        self.assertIn("VeTxtParser", run("explain", "DefChsFont", "settings")[1])
        for arguments, message in (
                (["RibonPanel"], "did you mean RibbonPanel?"),
                (["RibonPanel", "module"], "did you mean RibbonPanel?"),
                (["RibbonPanel", "module"], "no RibbonPanel is known in files of the kind module, "
                                            "but in those of user-interface; try"),
                (["ZoomFactor", "UI"], "but in those of settings; try"),
                (["RibbonPanel", "IsVisible"], "try sabxml explain IsVisible"),
                (["RibbonPanel", "setings"], "did you mean settings?")):
            self.assertIn(message, run("explain", *arguments)[2])
        self.assertIn("cannot make the folder a/c.xml", run("schema", "--out", "a/c.xml")[2])
        for kind in ("Application", "standards"):
            self.assertIn("xs:documentation", run("schema", kind)[1])
