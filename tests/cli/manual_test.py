#!/usr/bin/env python3
"""Every example of the manual does what the manual says.

usage: manual_test.py MANUAL SAMPLES_FOLDER SABXML

In a block marked "console", a line that begins with "$ " is a command, and what follows up to the
next one is all that it prints; a line "…" stands for any lines.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

MANUAL, SAMPLES, SABXML = map(Path, sys.argv[1:])
del sys.argv[1:]


def examples():
    text = MANUAL.read_text(encoding="utf-8")
    for block in re.findall(r"^```console\n(.*?)^```", text, re.M | re.S):
        for example in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, _, output = example.partition("\n")
            yield command, output


def pattern(output):
    parts = re.split(r"^ *…\n", output, flags=re.M)
    return re.compile("(?:.*\n)*?".join(map(re.escape, parts)))


class Manual(unittest.TestCase):
    maxDiff = None

    def test_examples(self):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(SAMPLES, Path(folder, "samples/workshop"))
            environment = {**os.environ, "PATH": f"{SABXML.parent}:{os.environ['PATH']}",
                           "SABCOM_REGISTRY": f"{folder}/default.reg"}
            environment.pop("SABXML_SERVER", None)
            found = list(examples())
            self.assertGreater(len(found), 10)
            for command, output in found:
                with self.subTest(command):
                    actual = subprocess.run(["bash", "-c", command], cwd=folder, env=environment,
                                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                            timeout=60).stdout.decode("utf-8")
                    actual = actual.replace(str(SABXML.parent), "/opt/sabxml")
                    if not pattern(output).fullmatch(actual):
                        self.assertEqual(output, actual)


if __name__ == "__main__":
    unittest.main()
