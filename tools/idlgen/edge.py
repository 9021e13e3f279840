"""The edge of the component classes: properties forwarded to fields, and the classes' identities."""

from . import cpp


def write_properties(library, source):
    out = [cpp.banner(source), "#pragma once\n", "#include <SabXmlParser.h>\n",
           '#include "object/fields.h"\n', "namespace sab {\n",
           "/// Forwards every property of an interface to the field of its name.",
           "template <class Interface, class Base>\nclass Properties;\n"]
    for interface in library.interfaces.values():
        out.append("template <class Base>")
        out.append(f"class Properties<{interface.name}, Base> : public Base {{\n public:")
        for member in interface.members:
            # A property with arguments is no plain value; its class implements it.
            if member.kind == "method" or len(member.parameters) > 1:
                continue
            out.append(f"  HRESULT STDMETHODCALLTYPE {member.function}({cpp.declaration(member)}) "
                       f"override {{")
            value = member.parameters[0].name
            call = "GetField" if member.kind == "propget" else "PutField"
            out.append(f"    return this->Reported({call}(this->fields.{member.name}, {value}));\n"
                       "  }")
        out.append("};\n")
    out.append("}  // namespace sab")
    return "\n".join(out) + "\n"


def write_coclasses(library, source):
    out = [cpp.banner(source), "#pragma once\n", "#include <SabXmlParser.h>\n",
           "#include <string_view>\n", "/// The component classes as types.",
           "namespace sab::coclass {\n"]
    for coclass in library.coclasses.values():
        out.append(f"struct {coclass.name} {{")
        out.append(f"  using Interface = {coclass.interface};")
        out.append(f"  static constexpr const CLSID& clsid = CLSID_{coclass.name};")
        out.append(f"  static constexpr char kName[] = \"{coclass.name}\";\n}};")
    out.append("\n}  // namespace sab::coclass")
    return "\n".join(out) + "\n"
