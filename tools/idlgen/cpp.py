"""How definitions are written in C++."""

TYPES = {
    "BSTR": "BSTR", "VARIANT_BOOL": "VARIANT_BOOL", "short": "SHORT", "unsigned short": "USHORT",
    "int": "INT", "long": "LONG", "unsigned long": "ULONG", "hyper": "LONGLONG", "float": "FLOAT",
    "double": "DOUBLE", "LONG_PTR": "LONG_PTR", "ULONG_PTR": "ULONG_PTR", "GUID": "GUID",
}


def banner(source, comment="//"):
    return f"{comment} Generated from {source} by tools/idlgen.py; do not edit.\n"


def type_text(type_):
    base = "SAFEARRAY*" if type_.is_array else TYPES.get(type_.name, type_.name)
    return base + "*" * type_.pointers


def declaration(member, with_names=True):
    """The parameters of a member as a C++ list."""
    return ", ".join(type_text(p.type) + (f" {p.name}" if with_names else "")
                     for p in member.parameters)


def guid_text(guid):
    parts = guid.split("-")
    tail = parts[3] + parts[4]
    data4 = ", ".join(f"0x{tail[i:i + 2]}" for i in range(0, 16, 2))
    return f"{{0x{parts[0]}, 0x{parts[1]}, 0x{parts[2]}, {{{data4}}}}}"


def string_text(text):
    """A narrow UTF-8 literal."""
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'
