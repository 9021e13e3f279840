"""The edge of the component classes: members forwarded to fields, and the classes' identities.

A member has a body or a value of its own name in the fields of its class:

    property X, method get_X, GetX or IsX with one result   fields.X
    property put X, method put_X or SetX with one argument  fields.X
    property put X with further arguments                   fields.SetX
    method get_X or GetX with further arguments             fields.X
    every other method                                      its own name

The fields of a class VeX are the struct XFields.
"""

import re

from . import cpp


def body_name(member):
    ins = [p for p in member.parameters if not p.is_out]
    if member.kind != "method":
        return "Set" * (member.kind == "propput" and len(ins) > 1) + member.name
    if len(ins) < len(member.parameters):
        pattern = r"(get_|Get|Is)(?=[A-Z])" if not ins else r"(get_|Get)(?=[A-Z])"
    elif len(ins) == 1:
        pattern = r"(put_|Set)(?=[A-Z])"
    else:
        return member.name
    return re.sub("^" + pattern, "", member.name)


def has_edge(interface):
    """Collections, whose places are read as well, implement their members themselves."""
    return not any(p.is_in and p.is_out for m in interface.members for p in m.parameters)


def takes_addresses(interface):
    return any(is_address(p) for m in interface.members for p in m.parameters)


def is_address(parameter):
    return parameter.type.name == "ULONG_PTR" and not parameter.is_out


def argument(parameter):
    if parameter.type.name == "BSTR":
        return f"GivenText({parameter.name})"
    return f"this->Given({parameter.name})" if is_address(parameter) else parameter.name


def is_accessor(member):
    return member.kind != "method" and len(member.parameters) == 1


def call(interface, member):
    fields = f"Base::Origin(), this->fields, &F::{body_name(member)}"
    ins = [p for p in member.parameters if not p.is_out]
    outs = [p.name for p in member.parameters if p.is_out]
    if not ins and len(outs) == 1:
        return f"ReadMember({fields}, {outs[0]})"
    if not outs and len(ins) == 1 and not is_address(ins[0]):
        return f"WriteMember({fields}, {ins[0].name})"
    arguments = "".join(f", {argument(p)}" for p in ins)
    return (f"CallMember({fields}, Places({', '.join(outs)}), "
            f"static_cast<{interface.name}&>(*this){arguments})")


def write_edge(library, source):
    out = [cpp.banner(source), "#pragma once\n", "#include <SabXmlParser.h>\n",
           '#include "automation/takes_addresses.h"', '#include "object/members.h"\n',
           "namespace sab {\n",
           "/// Forwards every member of an interface to the field or the body of its name.",
           "template <class Interface, class Base>\nclass Edge;\n",
           "/// Leads from the accessor of an interface to the field of its name.",
           "template <auto kAccessor>\nstruct FieldOf;\n"]
    for interface in filter(has_edge, library.interfaces.values()):
        base = "Base" if interface.base == "IDispatch" else f"Edge<{interface.base}, Base>"
        if takes_addresses(interface):
            base = f"TakesAddresses<{base}>"
        out.append("template <class Base>")
        out.append(f"class Edge<{interface.name}, Base> : public {base} {{")
        out.append("  using F = typename Base::Fields;\n\n public:")
        for member in interface.members:
            out.append(f"  HRESULT STDMETHODCALLTYPE {member.function}({cpp.declaration(member)}) "
                       f"override {{")
            out.append(f"    return {call(interface, member)};\n  }}")
        out.append("};\n")
        for member in filter(is_accessor, interface.members):
            out.append(f"template <>\nstruct FieldOf<&{interface.name}::{member.function}> {{")
            out.append(f"  template <class F>\n  static constexpr auto kMember = "
                       f"&F::{body_name(member)};\n}};")
    out.append("}  // namespace sab")
    return "\n".join(out) + "\n"


def fields_name(coclass):
    return coclass.name.removeprefix("Ve") + "Fields"


def write_coclasses(library, source):
    out = [cpp.banner(source), "#pragma once\n", "#include <SabXmlParser.h>\n",
           "#include <string_view>\n", "namespace sab {",
           "// What their objects hold."]
    out += [f"struct {fields_name(coclass)};" for coclass in library.coclasses.values()]
    out += ["}\n", "/// The component classes as types.", "namespace sab::coclass {\n"]
    for coclass in library.coclasses.values():
        out.append(f"struct {coclass.name} {{")
        out.append(f"  using Interface = {coclass.interface};")
        out.append(f"  using Fields = sab::{fields_name(coclass)};")
        out.append(f"  static constexpr const CLSID& clsid = CLSID_{coclass.name};")
        out.append(f"  static constexpr char kName[] = \"{coclass.name}\";\n}};")
    out.append("\n}  // namespace sab::coclass\n")
    out += ["namespace sab {", "/// The class whose own interface this is.",
            "template <class Interface>\nstruct CoclassOf;"]
    for interface, coclass in {c.interface: c.name for c in library.coclasses.values()}.items():
        out.append(f"template <>\nstruct CoclassOf<{interface}> {{\n"
                   f"  using Type = coclass::{coclass};\n}};")
    out.append("}  // namespace sab")
    return "\n".join(out) + "\n"
