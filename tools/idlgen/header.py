"""The public header: abstract interfaces, enumerations and identifiers, for every platform."""

from . import cpp


def write(library, source):
    out = [cpp.banner(source), "#pragma once\n", "#include <sabxml/com.h>\n"]
    for interface in library.interfaces.values():
        out.append(f"struct {interface.name};")
    out.append("")
    for enumeration in library.enumerations.values():
        out.append(f"/// {enumeration.help}")
        out.append(f"enum {enumeration.name} : INT {{")
        for value in enumeration.values:
            out.append(f"  {value.name} = {value.value},  ///< {value.help}")
        out.append("};\n")
    out.append(f"/// {library.help}")
    out.append(constant("GUID", f"LIBID_{library.name}", library.guid))
    for interface in library.interfaces.values():
        out.append(constant("IID", f"IID_{interface.name}", interface.guid))
    for coclass in library.coclasses.values():
        out.append(constant("CLSID", f"CLSID_{coclass.name}", coclass.guid))
    out.append("")
    for interface in library.interfaces.values():
        out += write_interface(interface)
    out.append("namespace sabxml {\n")
    out.append("/// Identifier of an interface: sabxml::InterfaceId<IVeX>::value.")
    out.append("template <class Interface>\nstruct InterfaceId;\n")
    for interface in library.interfaces.values():
        out.append(f"template <>\nstruct InterfaceId<{interface.name}> {{")
        out.append(f"  static constexpr const IID& value = IID_{interface.name};\n}};")
    out.append("/// The class whose default interface it is: sabxml::ClassId<IVeX>::value.")
    out.append("template <class Interface>\nstruct ClassId;\n")
    for coclass in library.coclasses.values():
        out.append(f"template <>\nstruct ClassId<{coclass.interface}> {{")
        out.append(f"  static constexpr const CLSID& value = CLSID_{coclass.name};\n}};")
    out.append("\n}  // namespace sabxml\n")
    out.append("// What IID_PPV_ARGS of Windows goes by.")
    out.append("#if defined(__CRT_UUID_DECL)")
    for interface in library.interfaces.values():
        numbers = cpp.guid_text(interface.guid).replace("{", "").replace("}", "")
        out.append(f"__CRT_UUID_DECL({interface.name}, {numbers})")
    out.append("#elif defined(_MSC_VER)")
    for interface in library.interfaces.values():
        out.append(f'struct __declspec(uuid("{interface.guid}")) {interface.name};')
    out.append("#endif")
    return "\n".join(out) + "\n"


def constant(type_, name, guid):
    return f"inline constexpr {type_} {name} = {cpp.guid_text(guid)};"


def write_interface(interface):
    out = [f"/// {line}" for line in interface.comment or [interface.help]]
    out.append(f"struct {interface.name} : public {interface.base} {{")
    for member in interface.members:
        out += [f"  /// {line}" for line in member.comment]
        out.append(f"  // {member.source}")
        out.append(f"  virtual HRESULT STDMETHODCALLTYPE {member.function}"
                   f"({cpp.declaration(member)}) = 0;")
    out.append("};\n")
    return out
