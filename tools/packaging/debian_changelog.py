#!/usr/bin/env python3
"""Writes the changelog of a Debian package, compressed, from the releases in CHANGELOG.md.

usage: debian_changelog.py CHANGELOG PACKAGE VERSION MAINTAINER OUTPUT

A version that the file does not have yet gets an entry that says so.
"""

import email.utils
import gzip
import calendar
import re
import sys
import time
from pathlib import Path

RELEASE = re.compile(r"^## (\S+)(?: \((\d{4}-\d\d-\d\d)\))?\n(.*?)(?=^## |\Z)", re.M | re.S)


def items(text):
    """The items of a section, each on one line."""
    lines = re.sub(r"\n  (?! )", " ", text).splitlines()
    return [line[2:].strip() for line in lines if line.startswith("- ")]


def wrapped(item):
    lines = [""]
    for word in item.split():
        if len(lines[-1]) + len(word) > 74:
            lines.append("")
        lines[-1] += (" " if lines[-1] else "") + word
    return "  * " + "\n    ".join(lines)


def write(changelog, package, version, maintainer):
    releases = {name: (date, items(text)) for name, date, text in RELEASE.findall(changelog) if date}
    releases = {version: ("1970-01-01", ["Not released yet."]), **releases} \
        if version not in releases else releases
    entries = []
    for name, (date, changes) in releases.items():
        moment = email.utils.formatdate(calendar.timegm(time.strptime(date, "%Y-%m-%d")))
        body = "\n".join(map(wrapped, changes or ["First release."]))
        entries.append(f"{package} ({name}) unstable; urgency=medium\n\n{body}\n\n"
                       f" -- {maintainer}  {moment.replace('-0000', '+0000')}\n")
    return "\n".join(entries)


def main():
    changelog, package, version, maintainer, output = sys.argv[1:]
    text = write(Path(changelog).read_text(encoding="utf-8"), package, version, maintainer)
    Path(output).parent.mkdir(parents=True, exist_ok=True)
    Path(output).write_bytes(gzip.compress(text.encode("utf-8"), 9, mtime=0))


if __name__ == "__main__":
    main()
