"""What type checkers and editors know of the Python client: a class for each interface, and which
one belongs to each class that can be created."""

from . import cpp

TYPES = {
    "BSTR": "str", "GUID": "str", "VARIANT_BOOL": "bool", "float": "float", "double": "float",
    "short": "int", "unsigned short": "int", "int": "int", "long": "int", "unsigned long": "int",
    "hyper": "int", "LONG_PTR": "int", "ULONG_PTR": "int",
}
PROG_ID_PREFIX = "SabXmlParser."
# What can be handed over besides the type that is handed out.
ACCEPTED = {"BSTR": "_TextLike"}


def write_interfaces(library, source):
    out = [cpp.banner(source, "#"), "from . import Collection, Object, Ref, _Indexed, _Property, _TextLike\n"]
    for interface in library.interfaces.values():
        out += write_interface(library, interface)
    return "\n".join(out) + "\n"


def write_create(library, source):
    out = [cpp.banner(source, "#"), "from contextlib import AbstractContextManager",
           "from typing import Any, Literal, Optional, overload\n", "from . import interfaces as i",
           "from . import _Path\n"]
    classes = [(f'Literal["{c.name}", "{PROG_ID_PREFIX}{c.name}"]', c.interface)
               for c in library.coclasses.values()]
    groups = [(name, interface) for name, interface in classes
              if library.interfaces[interface].base == "IVeCfgParser"]
    for name, interface in classes:
        out += ["@overload", create(name, f"i.{interface}")]
    out += ["@overload", create("str", "Any")]
    for name, interface in groups:
        out += ["@overload", settings(name, f"i.{interface}")]
    out += ["@overload", settings("str", "Any")]
    return "\n".join(out) + "\n"


def create(name, type_):
    return signature("create", [f"name: {name}", "library: Optional[_Path] = ..."], type_)


def settings(name, type_):
    return signature("settings", [f"name: {name}", "file: _Path", "node: str",
                                  "save_to: Optional[str] = ...", "library: Optional[_Path] = ..."],
                     f"AbstractContextManager[{type_}]")


def write_interface(library, interface):
    base = "Object" if interface.base == "IDispatch" else interface.base
    item = next((m.parameters[-1].type.name for m in interface.members if m.name == "GetHead"), None)
    out = [f"class {interface.name}({f'Collection[{item}]' if item else base}):",
           f"    {documentation(' '.join(interface.comment) or interface.help)}"]
    writable = {m.name for m in interface.members if m.kind == "propput"}
    for member in interface.members:
        if member.kind == "method":
            out.append(write_method(library, member))
        elif member.kind == "propget":
            out += write_property(library, member, member.name in writable)
    return [*out, ""]


def write_property(library, member, is_writable):
    *indexes, value = member.parameters
    type_ = result(library, value)
    if indexes:
        index = ", ".join(accepted(library, p) for p in indexes)
        type_ = f"_Indexed[{f'tuple[{index}]' if len(indexes) > 1 else index}, {type_}]"
    elif is_writable:
        return [f"    {member.name}: _Property[{type_}, {accepted(library, value)}]",
                f"    {documentation(member.help)}"]
    return ["    @property", signature(member.name, ["self"], type_, member.help)]


def write_method(library, member):
    # A place that is only written is left out: its value is the result.
    results = [result(library, p) for p in member.parameters if not p.is_in]
    parameters = [f"{p.name}: {accepted(library, p)}{' = ...' * ('optional' in p.directions)}"
                  for p in member.parameters if p.is_in]
    type_ = results[0] if len(results) == 1 else f"tuple[{', '.join(results)}]"
    return signature(member.name, ["self", *parameters], type_ if results else "None", member.help)


def signature(name, parameters, type_, help=None):
    head = f"def {name}({', '.join(parameters)}) -> {type_}:"
    return f"    {head}\n        {documentation(help)}" if help else f"{head} ..."


def documentation(text):
    return f'"""{text}"""'


def result(library, parameter):
    type_ = parameter.type
    if type_.name in library.interfaces:
        return type_.name
    name = "int" if type_.name in library.enumerations else TYPES[type_.name]
    return f"list[{name}]" if type_.is_array else name


def accepted(library, parameter):
    if parameter.is_in and parameter.is_out:
        return "Ref"
    if parameter.type.name in library.interfaces:
        return f"{parameter.type.name} | None"
    return ACCEPTED.get(parameter.type.name) or result(library, parameter)
