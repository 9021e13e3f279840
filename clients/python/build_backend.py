#!/usr/bin/env python3
"""Makes the wheel of the Python client, for pip (PEP 517) and for the packages.

usage: build_backend.py OUTPUT_FOLDER

It needs nothing but the standard library, so that pip downloads nothing, leaves the source folder
alone, and writes the same bytes each time. In a checkout it generates the stubs; packages have them.
"""

import base64
import hashlib
import re
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
PACKAGE = HERE / "sabxml"
VERSION, = re.findall(r'^__version__ = "(.*)"$', (PACKAGE / "__init__.py").read_text(), re.M)

METADATA = f"""Metadata-Version: 2.1
Name: sabxml
Version: {VERSION}
Summary: Client of the SabXmlParser component server
License: MIT
Requires-Python: >=3.9
Description-Content-Type: text/markdown

"""
WHEEL = """Wheel-Version: 1.0
Generator: sabxml
Root-Is-Purelib: true
Tag: py3-none-any
"""


def package_files():
    """The files of the package by their names in the wheel."""
    files = {f"sabxml/{path.name}": path.read_bytes() for path in PACKAGE.iterdir()
             if path.suffix in (".py", ".pyi", ".typed")}
    definitions = ROOT / "idl/SabXmlParser.idl"
    if definitions.is_file():
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, ROOT / "tools/idlgen.py", definitions, folder], check=True)
            for path in Path(folder, "python/sabxml").iterdir():
                files[f"sabxml/{path.name}"] = path.read_bytes()
    return files


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    """Writes the wheel and returns its name."""
    information = f"sabxml-{VERSION}.dist-info"
    files = dict(sorted(package_files().items()))
    files[f"{information}/METADATA"] = METADATA.encode() + (HERE / "README.md").read_bytes()
    files[f"{information}/WHEEL"] = WHEEL.encode()
    record = "".join(
        f"{name},sha256={base64.urlsafe_b64encode(hashlib.sha256(content).digest()).decode().rstrip('=')},"
        f"{len(content)}\n" for name, content in files.items())
    files[f"{information}/RECORD"] = f"{record}{information}/RECORD,,\n".encode()
    name = f"sabxml-{VERSION}-py3-none-any.whl"
    with zipfile.ZipFile(Path(wheel_directory, name), "w", zipfile.ZIP_DEFLATED) as wheel:
        for path, content in files.items():
            entry = zipfile.ZipInfo(path)  # of 1980, so that nothing depends on the clock
            entry.external_attr = 0o644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            wheel.writestr(entry, content)
    return name


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print(build_wheel(sys.argv[1]))
