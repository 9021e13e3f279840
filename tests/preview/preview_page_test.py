#!/usr/bin/env python3
"""The pages of "sabxml preview" in a browser, compared with what the server's objects hold.

usage: preview_page_test.py SOURCE_FOLDER SABXML AXE_FOLDER
"""

import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from xml.sax.saxutils import escape

sys.path.insert(0, str(Path(sys.argv[1], "tools")))
sys.dont_write_bytecode = True

from browser import PROGRAM, Browser

ROOT, SABXML, AXE_FOLDER = Path(sys.argv[1]), sys.argv[2], Path(sys.argv[3])
del sys.argv[1:4]
AXE = "4.10.2"
TAB, ENTER, RIGHT = ("Tab", 9), ("Enter", 13), ("ArrowRight", 39)
ENVIRONMENTS = {"ENV_DRAWING": ("drawing", ["file", "draw"]),
                "ENV_DIMENSIONING": ("drawing", ["file", "dimension"]),
                "ENV_UNFOLDING": ("sheet_metal", ["sheet_metal"]),
                "ENV_ASSEMBLY": ("assembly", ["file", "assembly"])}
# Every element with an identifier as the identifiers on the way to it.
PATHS = """[...document.querySelectorAll('[data-environment=%s] [data-id]')].map(e => {
    const path = []
    for (; e; e = e.parentElement.closest('[data-id]')) path.unshift(e.dataset.id)
    return path })"""
VISIBLE = """[...document.querySelectorAll('.panels [data-id]')]
    .filter(e => e.checkVisibility()).map(e => e.dataset.id)"""


def show(path):
    out = subprocess.run([SABXML, "show", "--json", ROOT / "samples/workshop" / path],
                         capture_output=True, check=True).stdout
    return next(iter(json.loads(out).values()))


def identifiers(value, path=()):
    """Of all objects in a value, in the order of the file, each with those around it."""
    if isinstance(value, list):
        return [found for item in value for found in identifiers(item, path)]
    if not isinstance(value, dict):
        return []
    own = path + ((value["Identify"],) if value.get("Identify") else ())
    return ([own] if own != path else []) + [
        found for part in value.values() for found in identifiers(part, own)]


def objects(value):
    if isinstance(value, (list, dict)):
        yield from [value] if isinstance(value, dict) and value.get("Identify") else []
        for part in value.values() if isinstance(value, dict) else value:
            yield from objects(part)


@unittest.skipUnless(PROGRAM, "Chromium is not installed")
class PreviewPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.scratch.name)
        cls.browser = Browser()
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.addClassCleanup(cls.browser.close)

    def open(self, file, *options):
        page = self.folder / "page.html"
        subprocess.run([SABXML, "preview", file, "-o", page, *options], check=True,
                       capture_output=True)
        self.browser.open(page.as_uri())

    def open_workshop(self, *options):
        self.open(ROOT / "samples/workshop/application.xml", *options)

    def test_every_element_is_once_in_its_place(self):
        self.open_workshop()
        for environment, (ui, commands) in ENVIRONMENTS.items():
            held = show(f"ui/{ui}.xml")["UI"]
            drawn = [tuple(path) for path in self.browser.value(PATHS % environment)]
            self.assertCountEqual(identifiers(held), drawn)
            for section, value in held.items():
                # Toolbars and windows are at their edges.
                if section not in ("ToolBars", "CustomWnds"):
                    expected = identifiers(value)
                    self.assertEqual(expected, [path for path in drawn if path in expected])
            names = {command["Identify"]: command["LocalName"]
                     for file in commands for command in objects(show(f"commands/{file}.xml"))}
            captions = dict(self.browser.value(
                f"[...document.querySelectorAll('[data-environment={environment}] [data-id]')].map("
                "e => [e.dataset.id, e.querySelector('.t')?.textContent])"))
            for item in objects(held):
                if "Command" not in item or item.get("IsGroup"):
                    continue
                prompts = {p["Command"]: p["ToolTip"] for p in held["Prompts"] if p["ToolTip"]}
                expected = (item.get("Text") or names.get(item["Command"]) or
                            prompts.get(item["Command"]) or item["Command"] or item["Identify"])
                self.assertEqual(expected.replace("&", ""), captions[item["Identify"]])

    def test_mouse(self):
        self.open_workshop()
        home = ["TAB_HOME", "PANEL_DRAW", "BTN_LINE", "GROUP_CURVES", "BTN_ARC", "BOX_LAYER",
                "BTN_SPLINE"]
        self.assertEqual(home[1:], self.browser.value(VISIBLE))
        self.browser.click("[data-id=BTN_LINE] > summary")
        self.assertEqual(home[1:3] + ["BTN_POLYLINE", "BTN_RAY"] + home[3:],
                         self.browser.value(VISIBLE))
        for tab, ids in {"TAB_ANNOTATE": ["PANEL_DIMENSION", "BTN_DIM_LINEAR"],
                         "TAB_HATCH": ["PANEL_HATCH"]}.items():
            self.browser.click(f"[data-id={tab}] > label")
            self.assertEqual(ids, self.browser.value(VISIBLE))
        # The default panel of this environment is on the second tab.
        self.browser.click("[data-environment=ENV_DIMENSIONING] > label")
        self.assertEqual(["PANEL_DIMENSION", "BTN_DIM_LINEAR"], self.browser.value(VISIBLE))
        self.open_workshop("--app-mode", "2")
        self.assertNotIn(["TAB_HOME"], self.browser.value(PATHS % "ENV_DRAWING"))
        self.assertIn(["TAB_ANNOTATE"], self.browser.value(PATHS % "ENV_DRAWING"))

    def test_keyboard(self):
        self.open_workshop()
        focus = """(() => { const e = document.activeElement
            const own = e.getAttribute('aria-describedby')
            const tip = own && document.getElementById(own)
            return [e.closest('[data-id]')?.dataset.id ?? e.tagName, tip ? tip.textContent : '',
                    tip ? tip.checkVisibility() : e.matches(':focus-visible')] })()"""
        seen = []
        while (at := self.press(TAB, focus))[0] != "BODY" and len(seen) < 500:
            self.assertTrue(at[2], at)  # the description of what has the focus is to be seen
            seen.append(at[0])
            if at[0] == "BTN_ARC":
                self.assertIn("圆弧", at[1])
                self.assertRegex(at[1], r"WK_ARC.* at .*ui/drawing.xml:90:\d+")
            if at[0] == "BTN_LINE" and "BTN_POLYLINE" not in seen:
                self.browser.press(*ENTER)
        tabs = {"TAB_ANNOTATE", "PANEL_DIMENSION", "BTN_DIM_LINEAR", "TAB_HATCH", "PANEL_HATCH",
                "PANEL_TRIM", "BTN_TRIM"}
        expected = {path[-1] for path in identifiers(show("ui/drawing.xml")["UI"])} - tabs
        self.assertEqual(set(), expected - {"KEYS_SKETCH"} - set(seen))
        self.browser.value("document.querySelector('[data-id=TAB_HOME] > input').focus()")
        for tab in ("TAB_ANNOTATE", "TAB_HATCH"):
            self.assertEqual(tab, self.press(RIGHT, focus)[0])
        self.assertEqual(["PANEL_HATCH"], self.browser.value(VISIBLE))

    def press(self, key, then):
        self.browser.press(*key)
        return self.browser.value(then)

    def test_accessible(self):
        axe = AXE_FOLDER / f"axe-{AXE}/node_modules/axe-core/axe.min.js"
        if not axe.is_file():
            npm = shutil.which("npm")
            if not npm or subprocess.run(
                    [npm, "install", "--silent", "--no-audit", "--no-fund", "--prefix",
                     AXE_FOLDER / f"axe-{AXE}", f"axe-core@{AXE}"], capture_output=True).returncode:
                self.skipTest("axe-core cannot be had from npm")
        self.open(self.broken_copy())
        self.browser.send("Page.setBypassCSP", enabled=True)
        self.browser.value(axe.read_text(encoding="utf-8") + "; 0")
        self.browser.value("document.querySelectorAll('details').forEach(e => e.open = true)")
        for scheme in ("light", "dark"):
            self.browser.show_in(scheme)
            for tab in ("TAB_HOME", "TAB_HATCH"):
                self.browser.value(f"document.querySelector('[data-id={tab}] > input').click()")
                found = self.browser.value("axe.run().then(r => r.violations.map("
                                           "v => [v.id, v.nodes.map(n => n.html.slice(0, 200))]))")
                self.assertEqual([], found)
        self.browser.send("Page.setBypassCSP", enabled=False)

    def broken_copy(self):
        copy = self.folder / "copy"
        shutil.copytree(ROOT / "samples/workshop", copy, dirs_exist_ok=True)
        ui = copy / "ui/drawing.xml"
        text = ui.read_text(encoding="utf-8").replace("<Command>WK_RAY<", "<Command>WK_RAI<")
        ui.write_text(text.replace("<Key>A<", "<Key>L<").replace("<IsVisible>0<", "<IsVisible>no<"),
                      encoding="utf-8")
        return copy / "application.xml"

    def test_hostile_texts_are_texts(self):
        texts = ["<script>document.title = 'run'</script>", "\"><img src=x onerror=alert(1)>",
                 "' onfocus=alert(1) autofocus='", "</style><style>*{display:none}", "--><b>", "&lt;b&gt; &amp;",
                 "]]><!--", "javascript:alert(1)", "\u202eoverridden", "https://example.com/x.png"]
        items = "".join(f"<MenuItem><Identify>{escape(t)}</Identify><Text>{escape(t)}</Text>"
                        f"<Command>{escape(t)}</Command></MenuItem>" for t in texts)
        buttons = items.replace("MenuItem>", "RibbonButton>")
        panel = "".join(f"<{name}>{escape(texts[1])}</{name}>" for name in
                        ("Identify", "Text", "ImageSmall", "ResourcePath", "LaunchButton"))
        ui = self.folder / "hostile'\"&<b>.xml"
        ui.write_text(f"<UI><MainMenu>{items}</MainMenu><RibbonBar><RibbonTab><RibbonPanel>{panel}{buttons}"
                      "</RibbonPanel></RibbonTab></RibbonBar></UI>", encoding="utf-8")
        self.open(ui)
        ids = "[...document.querySelectorAll('%s [data-id]')].map(e => e.dataset.id)"
        self.assertEqual(texts, self.browser.value(ids % ".menu"))
        self.assertEqual(texts, self.browser.value(ids % ".buttons"))
        self.assertEqual(0, self.browser.value(
            "document.querySelectorAll('script, img, link, base, iframe, [autofocus], [src]').length + "
            "[...document.querySelectorAll('*')].flatMap(e => [...e.attributes])"
            ".filter(a => /^on/i.test(a.name)).length"))
        self.assertRegex(self.browser.value("document.querySelector('meta[http-equiv]').content"),
                         r"^default-src 'none'; img-src data:; style-src 'unsafe-inline';")
        self.assertEqual(1, len(self.browser.requests))

    def test_watched_page_loads_itself_again(self):
        application = self.broken_copy()
        process = subprocess.Popen([SABXML, "preview", application, "--watch", "--serve"],
                                   stdout=subprocess.PIPE, text=True)
        try:
            process.stdout.readline()
            address = re.search(r"http://127\.0\.0\.1:\d+/", process.stdout.readline())[0]
            self.browser.open(address)
            ui = application.parent / "ui/drawing.xml"
            ui.write_text(ui.read_text(encoding="utf-8").replace("BTN_ARC<", "BTN_BOW<"),
                          encoding="utf-8")
            self.read_until(process, "ui/drawing.xml has changed")
            until = time.monotonic() + 20
            while not self.has_bow():
                self.assertLess(time.monotonic(), until)
                time.sleep(0.1)
            for options in ["disable no-such-rule", "disable image-not-found"]:
                (application.parent / ".sabxml-check").write_text(options + "\n", encoding="utf-8")
                self.read_until(process, ".sabxml-check has changed")
            self.read_until(process, "user interfaces")
            os.kill(process.pid, signal.SIGINT)
            self.assertEqual(0, process.wait(20))
        finally:
            process.kill()
            process.communicate()

    # A file may be seen while it is written, so what is printed in between is not certain.
    def read_until(self, process, text):
        self.assertTrue(any(text in line for line in process.stdout), text)

    def has_bow(self):
        try:
            return self.browser.value("document.querySelector('[data-id=BTN_BOW]') !== null")
        except RuntimeError:  # while the page is loaded
            return False


if __name__ == "__main__":
    program = unittest.main(exit=False)
    sys.exit(1 if not program.result.wasSuccessful() else 77 if not PROGRAM else 0)
