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
SOURCES = [p for folder in ("src", "include", "tests", "bench")
           for p in (ROOT / folder).rglob("*") if p.suffix in (".h", ".cpp")]

# What a folder may include of the project, besides itself; the order is that of the layers.
LAYERS = ["text", "base", "xml", "platform", "automation", "object", "common", "server"]
FAMILIES = ["framework", "settings", "standards", "templates"]


def allowed(folder):
    if folder in LAYERS:
        below = LAYERS[:LAYERS.index(folder)]
        return {folder, *below} if folder != "xml" else {"text", "xml"}
    if folder in FAMILIES:
        return {folder, "formats", "binding", *LAYERS}
    if folder == "formats":  # data alone
        return {"formats"}
    if folder == "binding":
        return {"binding", "formats", "common", "object", "automation", "platform", "base", "text"}
    if folder == "cli":  # what works on settings files knows their key tables
        return {"cli", "settings", "formats", "common", "platform", "base", "text"}
    return {folder, "formats", "binding", *LAYERS, *FAMILIES}


class House(unittest.TestCase):
    def test_platforms_differ_in_their_folders_only(self):
        condition = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b", re.M)
        may = (ROOT / "src/platform", ROOT / "include/sabxml", ROOT / "tests/clients",
               ROOT / "tests/support")
        guilty = [str(p.relative_to(ROOT)) for p in SOURCES
                  if not any(p.is_relative_to(m) for m in may)
                  and condition.search(p.read_text(encoding="utf-8"))]
        self.assertEqual([], guilty)

    def test_dependencies_point_downwards(self):
        include = re.compile(r'^#include "(\w+)/', re.M)
        guilty = []
        for path in SOURCES:
            if not path.is_relative_to(ROOT / "src"):
                continue
            folder = path.relative_to(ROOT / "src").parts[0]
            for target in include.findall(path.read_text(encoding="utf-8")):
                if (ROOT / "src" / target).is_dir() and target not in allowed(folder):
                    guilty.append(f"{path.relative_to(ROOT)} includes {target}/")
        self.assertEqual([], guilty)

    def test_format(self):
        if not shutil.which("clang-format"):
            self.skipTest("clang-format is not installed")
        result = subprocess.run(["clang-format", "--dry-run", "-Werror", *map(str, SOURCES)],
                                capture_output=True, text=True, check=False)
        self.assertEqual(0, result.returncode, result.stderr[:2000])


if __name__ == "__main__":
    unittest.main()
