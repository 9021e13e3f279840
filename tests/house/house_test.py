#!/usr/bin/env python3
"""Rules of the source tree that no compiler checks.

usage: house_test.py SOURCE_FOLDER
"""

import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(sys.argv.pop(1))
SOURCES = [p for folder in ("src", "include", "tests", "bench", "fuzz")
           for p in (ROOT / folder).rglob("*") if p.suffix in (".h", ".cpp")]

MAX_LINES = 400

# The table of the folders below src, highest layer first: what each may include. A folder may
# include what those may that it names; of a family (above the server) only the family itself.
TABLE = dict(re.findall(r"^\| `src/(\w+)/` \|.*\| (.*) \|$",
                        (ROOT / "docs/architecture.md").read_text(encoding="utf-8"), re.M))
LAYERS = list(TABLE)


def named(folder):
    below = LAYERS[LAYERS.index(folder) + 1:]
    words = re.findall(r"\w+", TABLE[folder])
    return below if "everything" in words else [name for name in LAYERS if name in words]


def allowed(folder):
    further = set()
    for name in named(folder):
        if LAYERS.index(name) >= max(LAYERS.index("server"), LAYERS.index(folder) + 1):
            further |= allowed(name)
    return {folder, *named(folder), *further}


class House(unittest.TestCase):
    def test_platforms_differ_in_their_folders_only(self):
        condition = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b", re.M)
        may = (ROOT / "src/platform", ROOT / "include/sabxml", ROOT / "tests/support")
        guilty = [str(p.relative_to(ROOT)) for p in SOURCES
                  if not any(p.is_relative_to(m) for m in may)
                  and condition.search(p.read_text(encoding="utf-8"))]
        self.assertEqual([], guilty)

    def test_dependencies_point_downwards(self):
        self.assertEqual({p.name for p in (ROOT / "src").iterdir() if p.is_dir()}, set(LAYERS))
        include = re.compile(r'^#include "(\w+)/', re.M)
        guilty = []
        for place, folder in enumerate(LAYERS):
            guilty += [f"{folder} names {above}" for above in named(folder)
                       if LAYERS.index(above) <= place]
            for path in (ROOT / "src" / folder).rglob("*.*"):
                targets = include.findall(path.read_text(encoding="utf-8"))
                guilty += [f"{path.relative_to(ROOT)} includes {target}/" for target in targets
                           if target in LAYERS and target not in allowed(folder)]
        self.assertEqual([], guilty)

    def test_no_circles(self):
        include = re.compile(r'^#include "([\w/]+\.h)"', re.M)
        done, circles = set(), []

        def visit(name, path):
            if name in path:
                circles.append(" > ".join([*path[path.index(name):], name]))
            elif name not in done and (ROOT / "src" / name).is_file():
                for target in include.findall((ROOT / "src" / name).read_text(encoding="utf-8")):
                    visit(target, [*path, name])
                done.add(name)

        for header in (ROOT / "src").rglob("*.h"):
            visit(str(header.relative_to(ROOT / "src")), [])
        self.assertEqual([], circles)

    def test_files_are_short(self):
        longer = {str(path.relative_to(ROOT))
                  for folder in ("src", "include", "idl", "tools", "clients", "tests", "fuzz", "bench")
                  for path in (ROOT / folder).rglob("*")
                  if path.suffix in (".h", ".cpp", ".py", ".idl", ".in")
                  and path.read_bytes().count(b"\n") > MAX_LINES}
        self.assertEqual(set(), longer)

    def test_format(self):
        if not shutil.which("clang-format"):
            self.skipTest("clang-format is not installed")
        result = subprocess.run(["clang-format", "--dry-run", "-Werror", *map(str, SOURCES)],
                                capture_output=True, text=True, check=False)
        self.assertEqual(0, result.returncode, result.stderr[:2000])


if __name__ == "__main__":
    unittest.main()
