"""The program under test and the folder that it runs in, for the tests beside this file.

The test's arguments are SAMPLES_FOLDER LIBRARY COMMAND...; COMMAND runs sabxml, and where it begins
with with_wine.sh, the system is Windows.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SAMPLES, LIBRARY, *COMMAND = sys.argv[1:]
del sys.argv[1:]
ROOT = Path(__file__).parents[2]
ON_WINDOWS = "with_wine" in COMMAND[0]
ON_32_BIT_WINDOWS = ON_WINDOWS and (Path(COMMAND[1]).parent / "wine32").exists()
native_only = unittest.skipIf(ON_WINDOWS, "POSIX only")

APP = "samples/workshop/application.xml"
SETTINGS = "samples/workshop/settings.xml"
PIPED = b"<Cmd><Identify>PIPED</Identify><S><PtSize>5</PtSize></S></Cmd>"  # the standard input

COMMAND_FILE = "<Cmd><Identify>%s</Identify></Cmd>"
FILES = {
    "utf16be.xml": b"\xfe\xff" + (COMMAND_FILE % "字").encode("utf-16-be"),
    "prolog.xml": b"\xef\xbb\xbf<?xml version='1.0'?><!-- <UI> --><?x a>b?>\n" +
                  (COMMAND_FILE % "X").encode(),
    "control.xml": (COMMAND_FILE % "a\n\tb\u009b").encode(),
    "prefix.xml": b"<w:Cmd xmlns:w='urn:w'><w:Identify>X</w:Identify></w:Cmd>",
    "empty.xml": b"",
    "utf16le.txt": b"\xff\xfe" + "\n[X]\n<a>".encode("utf-16-le"),
    "prose.txt": "\ufeffProse with a < in it, but no [marker]".encode(),
    "broken.xml": b"<Application>\n  <Identify>\n</Application>",
}

if ON_WINDOWS:
    # One program stays, so that Wine is not started anew for each command; it ends with its input.
    subprocess.run([*COMMAND[:-1], "cmd", "/c", "exit"], stdin=subprocess.DEVNULL, check=True)
    _waiting = subprocess.Popen([*COMMAND[:-1], "cmd"], stdin=subprocess.PIPE,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.environ["SAB_WINE_RUNS"] = "1"

_temporary = tempfile.TemporaryDirectory()  # until the end
scratch = Path(_temporary.name)
shutil.copytree(SAMPLES, scratch / "samples/workshop")
(scratch / "kinds").mkdir()
for name, content in FILES.items():
    (scratch / "kinds" / name).write_bytes(content)


def environment(**changes):
    """The registry of these tests is a file that does not exist, or that of a Wine prefix."""
    result = {k: v for k, v in os.environ.items() if k not in ("SABXML_SERVER", "NO_COLOR")}
    return {**result, "SABCOM_REGISTRY": str(scratch / "registry.reg"), **changes}


def run(*arguments, command=COMMAND, **changes):
    result = subprocess.run([*command, *arguments], cwd=scratch, env=environment(**changes),
                            capture_output=True, timeout=120, input=PIPED)
    return result.returncode, result.stdout.decode("utf-8"), result.stderr.decode("utf-8")
