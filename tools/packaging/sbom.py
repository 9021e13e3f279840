#!/usr/bin/env python3
"""Writes what a package is made of: a software bill of materials, SPDX 2.3 in JSON.

usage: sbom.py COMPONENTS FOLDER OUTPUT

COMPONENTS is a file with a line a component, NAME|VERSION|LICENSE|LINKED|FILES: what the build found,
whether it is linked "static" or "dynamic", and the endings of the files that it is part of, or the beginnings
of its shared libraries' names, with commas between them. The first line is the product itself. FOLDER holds the files as they are packaged; of each program and
library the digest is told, and the shared libraries that it loads.
"""

import hashlib
import json
import re
import subprocess
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
import source_date  # noqa: E402

BINARIES = (".so", ".so.0", ".dll", ".exe", "bin/sabxml")


def identifier(text):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", text)


def package(name, version, license_name):
    return {"name": name, "SPDXID": identifier(f"Package-{name}"), "versionInfo": version,
            "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
            "licenseConcluded": license_name, "licenseDeclared": license_name,
            "copyrightText": "NOASSERTION"}


def loaded_libraries(binary):
    """The names of shared libraries as a program or library asks for them."""
    output = subprocess.run(["objdump", "-p", binary], capture_output=True, text=True, check=True,
                            env={"LC_ALL": "C", "PATH": "/usr/bin:/bin"}).stdout
    return re.findall(r"^\s*(?:NEEDED|DLL Name:)\s+(\S+)$", output, re.M)


def relation(one, kind, other):
    return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}


def write(components, folder, created):
    rows = [line.split("|") for line in components.splitlines() if line]
    product, *others = rows
    packages = [package(*row[:3]) for row in rows]
    relations = [relation("SPDXRef-DOCUMENT", "DESCRIBES", packages[0]["SPDXID"])]
    files = []
    binaries = sorted(path for path in folder.rglob("*")
                      if path.is_file() and not path.is_symlink() and str(path).endswith(BINARIES))
    if not binaries:
        raise SystemExit(f"sbom.py: {folder} holds no program and no library")
    for path in binaries:
        loaded = sorted(loaded_libraries(path))
        name = "./" + path.relative_to(folder).as_posix()
        content = path.read_bytes()
        files.append({"fileName": name, "SPDXID": identifier(f"File-{name[2:]}"),
                      "fileTypes": ["BINARY"], "licenseConcluded": product[2],
                      "copyrightText": "NOASSERTION",
                      "checksums": [{"algorithm": kind, "checksumValue": digest(content).hexdigest()}
                                    for kind, digest in (("SHA1", hashlib.sha1),
                                                         ("SHA256", hashlib.sha256))],
                      "comment": "loads " + ", ".join(loaded)})
        relations.append(relation(packages[0]["SPDXID"], "CONTAINS", files[-1]["SPDXID"]))
        for other, (_, _, _, linked, endings) in zip(packages[1:], others):
            parts = tuple(endings.split(","))
            if name.endswith(parts) if linked == "static" else \
                    any(library.startswith(parts) for library in loaded):
                relations.append(relation(files[-1]["SPDXID"], f"{linked.upper()}_LINK",
                                          other["SPDXID"]))
    document = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
                "name": f"{product[0]}-{product[1]}",
                "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(created)),
                                 "creators": ["Organization: SabXmlParser contributors",
                                              "Tool: sbom.py"]},
                "packages": packages, "files": files, "relationships": relations}
    whole = hashlib.sha256(json.dumps(document).encode()).hexdigest()
    document["documentNamespace"] = f"https://workshop.example/spdx/{document['name']}-{whole[:32]}"
    return document


def main():
    components, folder, output = map(Path, sys.argv[1:])
    root = Path(__file__).resolve().parents[2]
    document = write(components.read_text(encoding="utf-8"), folder, source_date.of(root))
    output.parent.mkdir(parents=True, exist_ok=True)
    output.write_text(json.dumps(document, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
