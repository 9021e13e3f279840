#!/usr/bin/env python3
"""Every example of the documents does what its page says.

usage: manual_test.py REPOSITORY SABXML [COMPILER FLAG...]
       manual_test.py REPOSITORY --vbscript COMMAND...

In a block marked "console", a line that begins with "$ " is a command, and what follows up to the
next one is all that it prints; a line "…" stands for any lines. In a block marked "sh" the lines that
call sabxml succeed. The blocks of a page in C++, Python or VBScript are one program, in their order;
what it prints stands in the blocks marked "text" that follow them.

In file-formats.md a block after a line `name`: is a file. A table whose head is a command holds values
of the JSON that the command prints: a path and the value. Where the last column of a table of elements
is a result code, the file of the section is refused with it when the element is missing or empty.
"""

import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

ROOT, SABXML, *COMMAND = sys.argv[1:]
ROOT = Path(ROOT)
del sys.argv[1:]

PAGES = {page.relative_to(ROOT): re.findall(r"^```(\w+)\n(.*?)^```", page.read_text(encoding="utf-8"),
                                            re.M | re.S)
         for page in [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")),
                      ROOT / "clients/python/README.md"]}

without_sanitizers = unittest.skipUnless(COMMAND, "the build has sanitizers, which examples lack")

# What a C++ program needs around the lines that a page shows.
CPP = """
#include <cstdio>
%s
static void Show(BSTR text) {
  for (UINT i = 0; i < SysStringLen(text); ++i) std::putchar(static_cast<char>(text[i]));
  std::putchar('\\n');
}
int main() {
%s
  return app ? 0 : 1;
}
"""


FORMATS = (ROOT / "docs/file-formats.md").read_text(encoding="utf-8")
FILE = re.compile(r"^`([\w.]+)`:\n\n```\w+\n(.*?)^```", re.M | re.S)
VALUES = re.compile(r"^\| `sabxml ([^`]+)` \| \|\n\|[-|]+\|\n((?:\|.*\n)+)", re.M)
REQUIRED = re.compile(r"^\| `([\w/]+)` \|(.*)\| (0x[0-9A-F]{8}) \|$", re.M)
NODE_PATHS = re.compile(r"```xml\n([^`]+)```\n\na group whose key is `PtSize` reads:\n\n"
                        r"\|.*\n\|.*\n((?:\|.*\n)+)")
READ_PTSIZE = """
import sabxml, sys
for path in sys.argv[1:]:
    group = sabxml.create("VeDisplayCfgParser")
    try:
        group.Load("paths.xml", path)
        print(group.PtSize)
    except sabxml.Error:
        print()
"""


def encoded(text):
    declared = re.match(r'<\?xml[^>]*encoding="([^"]+)"', text)
    return text.encode(declared.group(1) if declared else "utf-8")


def at(tree, path):
    """What stands at "a.b[0].c"; names may contain slashes and, after them, brackets of their own."""
    for name in path.split("."):
        indexes = []
        while isinstance(tree, dict) and name not in tree and (m := re.match(r"(.*)\[(\d+)\]$", name)):
            name = m.group(1)
            indexes.insert(0, int(m.group(2)))
        tree = tree[name]
        for index in indexes:
            tree = tree[index]
    return tree


def pattern(output):
    parts = re.split(r"^ *…\n", output, flags=re.M)
    return re.compile("(?:.*\n)*?".join(map(re.escape, parts)))


def programs(language):
    """Of every page that has one: its program and what it prints."""
    for page, blocks in PAGES.items():
        source, printed = "", ""
        for before, (kind, text) in zip([("", ""), *blocks], blocks):
            if kind == language:
                source += text
            elif kind == "text" and before[0] == language:
                printed += text
        if source:
            yield page, source, printed


class Manual(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        shutil.copytree(ROOT / "samples/workshop", self.folder / "samples/workshop")
        self.environment = {**os.environ, "SABCOM_REGISTRY": str(self.folder / "default.reg"),
                            "PYTHONPATH": str(ROOT / "clients/python")}
        self.environment.pop("SABXML_SERVER", None)

    def run_command(self, *command):
        """What a command prints, both streams together."""
        result = subprocess.run([*map(str, command)], cwd=self.folder, env=self.environment, timeout=120,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        return result.stdout.decode("utf-8").replace("\r", ""), result.returncode

    def check_programs(self, language, run):
        found = list(programs(language))
        self.assertTrue(found)
        for page, source, printed in found:
            with self.subTest(page):
                self.assertEqual((printed, 0), run(source))


@unittest.skipIf(SABXML == "--vbscript", "VBScript only")
class OnPosix(Manual):
    def setUp(self):
        super().setUp()
        tools = self.folder / "tools"
        tools.mkdir()
        (tools / "run").symlink_to(SABXML)
        self.environment["PATH"] = f"{Path(SABXML).parent}:{os.environ['PATH']}"

    def test_examples_of_files(self):
        files = dict(FILE.findall(FORMATS))
        for name, text in files.items():
            (self.folder / name).write_bytes(encoded(text))
        read = set()
        for command, rows in VALUES.findall(FORMATS):
            words = shlex.split(command)
            read.update(words)
            output, _ = self.run_command(SABXML, *words)
            for row in rows.splitlines():
                with self.subTest(command=command, row=row):
                    path, value = re.fullmatch(r"\| `([^`]+)` \| `([^`]+)` \|", row).groups()
                    self.assertEqual(json.loads(value), at(json.loads(output), path))
        self.assertGreaterEqual(len(files), 10)
        self.assertLessEqual(set(files) - {"BrowseHistory.xml"}, read)  # it is read with settings.xml

    def test_required_elements(self):
        rows = [(*FILE.findall(section)[0], *row, change)
                for section in FORMATS.split("\n## ") for row in REQUIRED.findall(section)
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
                output, result = self.run_command(SABXML, "show", name)
                self.assertEqual((1, True), (result, code in output), output)

    @without_sanitizers
    def test_node_paths(self):
        text, rows = NODE_PATHS.search(FORMATS).groups()
        (self.folder / "paths.xml").write_text(text)
        expected = {}
        for row in rows.splitlines():
            paths, _, value = re.split(r"(?<!\\)\|", row)[1:4]
            for path in re.findall(r"`([^`]+)`", paths) or [""]:
                expected[path.replace("\\|", "|")] = value.strip(" `")
        self.environment["SABXML_SERVER"] = str(Path(SABXML).parent / "libSabXmlParser.so")
        output, _ = self.run_command(sys.executable, "-c", READ_PTSIZE, *expected)
        self.assertEqual(expected, dict(zip(expected, output.splitlines())))

    def test_commands(self):
        found = 0
        for page, blocks in PAGES.items():
            for block in (text for kind, text in blocks if kind == "console"):
                for example in re.split(r"^\$ ", block, flags=re.M)[1:]:
                    command, _, expected = example.partition("\n")
                    with self.subTest(page=page, command=command):
                        actual, _ = self.run_command("bash", "-c", command)
                        actual = actual.replace(str(Path(SABXML).parent), "/opt/sabxml")
                        if not pattern(expected).fullmatch(actual):
                            self.assertEqual(expected, actual)
                    found += 1
            for block in (text for kind, text in blocks if kind == "sh"):
                for command in re.findall(r"^(?:tools/run|sabxml) .*", block, re.M):
                    with self.subTest(page=page, command=command):
                        output, result = self.run_command("bash", "-c", command)
                        self.assertEqual(0, result, output)
                    found += 1
        self.assertGreater(found, 40)

    @without_sanitizers
    def test_python(self):
        self.environment["SABXML_SERVER"] = str(Path(SABXML).parent / "libSabXmlParser.so")
        for _ in range(2):  # with the files that the first run has left
            self.check_programs("python", lambda source: self.run_command(sys.executable, "-c", source))

    @without_sanitizers
    def test_cpp(self):
        self.assertEqual(0, self.run_command(SABXML, "register")[1])

        def run(source):
            includes = "\n".join(re.findall(r"^#include.*", source, re.M)) or "#include <SabXmlParser.h>"
            file = self.folder / "example.cpp"
            file.write_text(CPP % (includes, re.sub(r"^#include.*", "", source, flags=re.M)))
            output, result = self.run_command(*COMMAND[:1], file, "-o", self.folder / "example",
                                              *COMMAND[1:])
            self.assertEqual(0, result, output)
            return self.run_command(self.folder / "example")

        self.check_programs("cpp", run)


@unittest.skipUnless(SABXML == "--vbscript", "not VBScript")
class OnWindows(Manual):
    def test_vbscript(self):
        def run(source):
            file = self.folder / "example.vbs"
            file.write_text(source.replace("C:\\workshop", f"z:{self.folder}/samples/workshop"))
            return self.run_command(*COMMAND, f"z:{file}")

        self.check_programs("vb", run)


if __name__ == "__main__":
    unittest.main()
