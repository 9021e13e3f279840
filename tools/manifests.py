#!/usr/bin/env python3
"""Writes the manifests by which a Windows program uses the server without registration.

    manifests.py SABXML VERSION ARCHITECTURE FOLDER

SABXML is the built program; what the server would register ("sabxml register --dry-run") is what the
manifests say. ARCHITECTURE is the processor as manifests name it: amd64 or x86. Into FOLDER go
SabXmlParser.manifest, the assembly, which lies beside SabXmlParser.dll, and application.manifest,
the part that a program's own manifest takes over. The elements are those of Microsoft's
"Assembly manifests" and "Application manifests" reference.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import xml.sax.saxutils

CLASS = re.compile(r'HKEY_CLASSES_ROOT\\CLSID\\(\{[-0-9A-F]+\})(?:\\([^\]]*))?$')
LINE = re.compile(r'^\+ \[([^\]]*)\](?: (?:@|"([^"]*)")="(.*)")?$')
NAMESPACE = "urn:schemas-microsoft-com:asm.v1"


def registered_classes(program):
    """What each class would leave in the registry: {clsid: {place: value}}."""
    with tempfile.TemporaryDirectory() as folder:
        printed = subprocess.run(
            [program, "--registry", f"{folder}/empty.reg", "register", "--dry-run"],
            check=True, capture_output=True, text=True, encoding="utf-8").stdout
    classes = {}
    for line in printed.splitlines():
        match = LINE.match(line)
        if not match:
            raise SystemExit(f"manifests.py: a line that is not understood: {line}")
        key, name, value = match.groups()
        place = CLASS.match(key)
        if not place or value is None:
            continue
        clsid, below = place.groups()
        values = classes.setdefault(clsid, {})
        values[f"{below or ''}@{name or ''}"] = value.replace("\\\\", "\\")
    if not classes:
        raise SystemExit("manifests.py: the server would register no class")
    return classes


def attributes(**values):
    return "".join(f" {name}={xml.sax.saxutils.quoteattr(value)}"
                   for name, value in values.items() if value is not None)


def identity(version, architecture):
    return "<assemblyIdentity" + attributes(
        type="win32", name="SabXmlParser", version=version + ".0",
        processorArchitecture=architecture) + "/>"


def assembly(classes, version, architecture):
    lines = ['<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
             f'<assembly xmlns="{NAMESPACE}" manifestVersion="1.0">',
             "  " + identity(version, architecture),
             '  <file name="SabXmlParser.dll">']
    libraries = set()
    for clsid, values in sorted(classes.items(), key=lambda item: item[1]["@"]):
        library = values["TypeLib@"]
        libraries.add(library)
        start = "    <comClass" + attributes(
            description=values["@"], clsid=clsid,
            threadingModel=values["InprocServer32@ThreadingModel"],
            tlbid=library, progid=values.get("ProgID@"))
        any_version = values.get("VersionIndependentProgID@")
        if any_version:
            lines.append(f"{start}>\n      <progid>{any_version}</progid>\n    </comClass>")
        else:
            lines.append(start + "/>")
    for library in sorted(libraries):
        lines.append("    <typelib" + attributes(tlbid=library, version="1.0", helpdir="") + "/>")
    return "\n".join(lines + ["  </file>", "</assembly>", ""])


def application(version, architecture):
    return f"""<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<!-- Take the dependency over into the manifest of your program. -->
<assembly xmlns="{NAMESPACE}" manifestVersion="1.0">
  <dependency>
    <dependentAssembly>
      {identity(version, architecture)}
    </dependentAssembly>
  </dependency>
</assembly>
"""


def main():
    if len(sys.argv) != 5:
        raise SystemExit(__doc__)
    program, version, architecture, folder = sys.argv[1:]
    target = pathlib.Path(folder)
    target.mkdir(parents=True, exist_ok=True)
    texts = {"SabXmlParser.manifest": assembly(registered_classes(program), version, architecture),
             "application.manifest": application(version, architecture)}
    for name, text in texts.items():
        (target / name).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
