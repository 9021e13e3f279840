#!/usr/bin/env python3
"""Turns the interface definitions into everything that is made from them.

usage: idlgen.py SOURCE.idl OUTPUT_FOLDER

Writes the public header, the dispatch tables, the edge of the component classes, what type checkers
know of the Python client, and one plain IDL text in the code page of the type library (GBK) for the
IDL compiler. A file whose content does not
change is left alone, so that nothing is compiled again for it.
"""

import sys
from pathlib import Path

sys.dont_write_bytecode = True

from idlgen import dispatch, edge, header, reader, stubs  # noqa: E402
from idlgen.model import DefinitionError  # noqa: E402


def plain_definition(library):
    """The whole source as one text in the type library's code page, without comments."""
    content = bytearray()
    for line in library.expanded:
        code = line.split("//")[0]
        for character in code.rstrip() + "\n":
            encoded = character.encode("gbk")
            content += encoded
            if len(encoded) == 2 and encoded[1] == ord("\\"):
                content += b"\\"  # the compiler takes that second byte for an escape
    return bytes(content)


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    source, folder = Path(arguments[0]), Path(arguments[1])
    try:
        library = reader.read(source)
    except (DefinitionError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    origin = f"{source.parent.name}/{source.name}"
    outputs = {
        "include/SabXmlParser.h": header.write(library, origin).encode("utf-8"),
        "generated/dispatch_tables.h": dispatch.write_header(library, origin).encode("utf-8"),
        "generated/dispatch_tables.cpp": dispatch.write_source(library, origin).encode("utf-8"),
        "generated/edge.h": edge.write_edge(library, origin).encode("utf-8"),
        "generated/coclasses.h": edge.write_coclasses(library, origin).encode("utf-8"),
        "SabXmlParser.gbk.idl": plain_definition(library),
        "python/sabxml/interfaces.pyi": stubs.write_interfaces(library, origin).encode("utf-8"),
        "python/sabxml/_create.pyi": stubs.write_create(library, origin).encode("utf-8"),
    }
    for name, content in outputs.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        if not path.is_file() or path.read_bytes() != content:
            path.write_bytes(content)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
