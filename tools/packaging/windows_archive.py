#!/usr/bin/env python3
"""Packs what was installed for Windows into a ZIP archive whose bytes depend on its files alone.

usage: windows_archive.py STAGE TEXTS VERSION OUTPUT

STAGE holds the folders x64 and x86, or one of them. From TEXTS come README.txt and the scripts of the
archive's root, with the line ends of Windows. The root also gets SHA256SUMS of all files. Names are in
order, times are that of the source, and all files have the same permissions.
"""

import hashlib
import sys
import time
import zipfile
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
import source_date  # noqa: E402

EARLIEST = 315532800  # of ZIP: 1980


def files_of(stage, texts, version):
    files = {path.relative_to(stage).as_posix(): path.read_bytes()
             for path in stage.rglob("*") if path.is_file()}
    for path in texts.iterdir():
        text = path.read_text(encoding="utf-8").replace("@PROJECT_VERSION@", version)
        files[path.name] = text.replace("\n", "\r\n").encode("utf-8")
    sums = "".join(f"{hashlib.sha256(content).hexdigest()}  {name}\n"
                   for name, content in sorted(files.items()))
    return {**files, "SHA256SUMS": sums.encode()}


def main():
    stage, texts, version, output = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3], Path(sys.argv[4])
    root = Path(__file__).resolve().parents[2]
    moment = time.gmtime(max(source_date.of(root), EARLIEST))[:6]
    output.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, content in sorted(files_of(stage, texts, version).items()):
            entry = zipfile.ZipInfo(f"{output.stem}/{name}", moment)
            entry.external_attr = (0o100755 if name.endswith((".exe", ".dll", ".cmd")) else 0o100644) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, content)
    digest = hashlib.sha256(output.read_bytes()).hexdigest()
    Path(f"{output}.sha256").write_text(f"{digest}  {output.name}\n")


if __name__ == "__main__":
    main()
