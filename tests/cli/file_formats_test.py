#!/usr/bin/env python3
"""Every example of the page on file formats is read as the page says.

usage: file_formats_test.py PAGE SABXML

A block behind a line `name`: is a file. A table whose head is a command holds values of the JSON that
the command prints: a path and the value. Where the last column of a table of elements is a result code,
the file of the section is refused with it when the element is missing, and when it is empty.
"""

import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

PAGE, SABXML = map(Path, sys.argv[1:])
del sys.argv[1:]

SECTIONS = re.split(r"^## ", PAGE.read_text(encoding="utf-8"), flags=re.M)[1:]
FILE = re.compile(r"^`([\w.]+)`:\n\n```\w+\n(.*?)^```", re.M | re.S)
VALUES = re.compile(r"^\| `(sabxml [^`]+)` \| \|\n\|[-|]+\|\n((?:\|.*\n)+)", re.M)
VALUE = re.compile(r"^\| `([^`]+)` \| `([^`]+)` \|$", re.M)
REQUIRED = re.compile(r"^\| `([\w/]+)` \|(.*)\| (0x[0-9A-F]{8}) \|$", re.M)

FILES = {name: text for section in SECTIONS for name, text in FILE.findall(section)}
TABLES = [(command, VALUE.findall(rows), rows.count("\n"))
          for section in SECTIONS for command, rows in VALUES.findall(section)]


def encoded(text):
    declared = re.match(r'<\?xml[^>]*encoding="([^"]+)"', text)
    return text.encode(declared.group(1) if declared else "utf-8")


def at(tree, path):
    """What stands at "a.b[0].c"; names may contain slashes and, behind them, brackets of their own."""
    for name in path.split("."):
        indexes = []
        while isinstance(tree, dict) and name not in tree and (m := re.match(r"(.*)\[(\d+)\]$", name)):
            name = m.group(1)
            indexes.insert(0, int(m.group(2)))
        tree = tree[name]
        for index in indexes:
            tree = tree[index]
    return tree


class FileFormats(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        for name, text in FILES.items():
            (self.folder / name).write_bytes(encoded(text))

    def run_command(self, command):
        environment = {**os.environ, "SABCOM_REGISTRY": f"{self.folder}/default.reg"}
        environment.pop("SABXML_SERVER", None)
        return subprocess.run([str(SABXML), *shlex.split(command)[1:]], cwd=self.folder,
                              env=environment, capture_output=True, timeout=60, check=False)

    def wrong_values(self):
        """Rows of all tables that say something else than the command."""
        for command, values, _ in TABLES:
            result = self.run_command(command)
            tree = json.loads(result.stdout or "null")
            for path, value in values:
                try:
                    actual = at(tree, path)
                except (KeyError, IndexError, TypeError):
                    actual = result.stderr.decode("utf-8") or "(nothing)"
                if actual != json.loads(value):
                    yield command, path, value, actual

    def test_examples(self):
        for command, values, rows in TABLES:
            self.assertEqual(rows, len(values), f"a row of the table of {command} is not understood")
        self.assertEqual([], list(self.wrong_values()))

    def test_every_example_is_read(self):
        self.assertGreaterEqual(len(FILES), 10)
        for name, text in FILES.items():
            file = self.folder / name
            file.unlink()
            self.assertTrue(any(self.wrong_values()), f"nothing is said of what {name} holds")
            file.write_bytes(encoded(text))

    def test_required_elements(self):
        rows = [(*FILE.findall(section)[0], *row, change)
                for section in SECTIONS for row in REQUIRED.findall(section)
                for change in ["missing"] + ["empty"] * ("may be empty" not in row[1])]
        self.assertGreater(len(rows), 15)
        for name, text, path, _, code, change in rows:
            with self.subTest(f"{name}: {path} is {change}"):
                root = ET.fromstring(re.sub(r"<\?xml.*?\?>", "", text))
                top, *way, last = path.split("/")
                self.assertEqual(top, root.tag)
                parent = root.find("/".join(way)) if way else root
                element = parent.find(last)
                if change == "missing":
                    parent.remove(element)
                else:
                    element.text = " "
                (self.folder / name).write_bytes(ET.tostring(root, "utf-8"))
                result = self.run_command(f"sabxml show {name}")
                self.assertEqual(1, result.returncode)
                self.assertIn(code, result.stderr.decode("utf-8"))


if __name__ == "__main__":
    unittest.main()
