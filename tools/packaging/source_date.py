#!/usr/bin/env python3
"""Prints the time that packages carry, in seconds since 1970, so that it depends on the source alone.

usage: source_date.py SOURCE_FOLDER

It is SOURCE_DATE_EPOCH where that is set, else the time of the last commit, else, without Git, that
of the last release in CHANGELOG.md.
"""

import calendar
import os
import re
import subprocess
import sys
import time
from pathlib import Path


def of(folder):
    if os.environ.get("SOURCE_DATE_EPOCH"):
        return int(os.environ["SOURCE_DATE_EPOCH"])
    if (folder / ".git").exists():
        commit = subprocess.run(["git", "-C", folder, "log", "-1", "--format=%ct"],
                                capture_output=True, text=True)
        if commit.returncode == 0:
            return int(commit.stdout)
    changelog = (folder / "CHANGELOG.md").read_text(encoding="utf-8")
    released = re.search(r"^## \S+ \((\d{4}-\d\d-\d\d)\)$", changelog, re.M)
    return calendar.timegm(time.strptime(released[1], "%Y-%m-%d")) if released else 0


if __name__ == "__main__":
    print(of(Path(sys.argv[1])))
