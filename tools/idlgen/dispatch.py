"""Dispatch tables: what IDispatch and type information know of each interface, and the call itself."""

from . import cpp

VARTYPES = {
    "BSTR": "VT_BSTR", "VARIANT_BOOL": "VT_BOOL", "short": "VT_I2", "unsigned short": "VT_UI2",
    "int": "VT_INT", "long": "VT_I4", "unsigned long": "VT_UI4", "hyper": "VT_I8",
    "float": "VT_R4", "double": "VT_R8", "LONG_PTR": "kSignedPointer",
    "ULONG_PTR": "kUnsignedPointer", "GUID": "VT_USERDEFINED",
}
SLOTS = {
    "BSTR": "text", "VARIANT_BOOL": "boolean", "short": "int16", "unsigned short": "uint16",
    "int": "int_", "long": "int32", "unsigned long": "uint32", "hyper": "int64",
    "float": "real32", "double": "real64", "LONG_PTR": "position", "ULONG_PTR": "count",
    "GUID": "guid",
}
KINDS = {"method": "kMethod", "propget": "kPropertyGet", "propput": "kPropertyPut"}


def write_header(library, source):
    out = [cpp.banner(source), "#pragma once\n", "#include <SabXmlParser.h>\n",
           '#include "base/interface_info.h"\n', "namespace sab {\n"]
    for interface in library.interfaces.values():
        out.append(f"template <>\nconst InterfaceInfo& InterfaceInfoOf<{interface.name}>();")
    out.append("\n}  // namespace sab")
    return "\n".join(out) + "\n"


def write_source(library, source):
    out = [cpp.banner(source), '#include "generated/dispatch_tables.h"\n', "namespace sab {", "namespace {\n"]
    for enumeration in library.enumerations.values():
        out += write_enumeration(enumeration)
    for interface in library.interfaces.values():
        out.append(f"extern const InterfaceInfo k{interface.name};")
    out.append("")
    for interface in library.interfaces.values():
        out += write_interface(library, interface)
    out += write_library(library)
    out.append("}  // namespace\n")
    for interface in library.interfaces.values():
        out.append(f"template <>\nconst InterfaceInfo& InterfaceInfoOf<{interface.name}>() {{\n"
                   f"  return k{interface.name};\n}}")
    out.append("\nconst LibraryInfo& TheLibrary() { return kLibrary; }\n")
    out.append("}  // namespace sab")
    return "\n".join(out) + "\n"


def write_enumeration(enumeration):
    name = enumeration.name
    out = [f"constexpr EnumerationValue k{name}Values[] = {{"]
    for value in enumeration.values:
        out.append(f"    {{OLESTR(\"{value.name}\"), {value.value}}},")
    out.append("};")
    out.append(f"constexpr GUID k{name}Guid = {cpp.guid_text(enumeration.guid)};")
    out.append(f"const EnumerationInfo k{name} = {{OLESTR(\"{name}\"), &k{name}Guid, "
               f"{cpp.string_text(enumeration.help)}, k{name}Values}};\n")
    return out


def write_interface(library, interface):
    name = interface.name
    out = []
    for index, member in enumerate(interface.members):
        if member.parameters:
            out.append(f"constexpr ParameterInfo k{name}Parameters{index}[] = {{")
            out += [f"    {parameter(library, p)}," for p in member.parameters]
            out.append("};")
    out.append(f"constexpr MemberInfo k{name}Members[] = {{")
    for index, member in enumerate(interface.members):
        parameters = f"k{name}Parameters{index}" if member.parameters else "{}"
        out.append(f"    {{OLESTR(\"{member.name}\"), {member.dispid}, MemberKind::"
                   f"{KINDS[member.kind]}, {parameters}, {cpp.string_text(member.help)}}},")
    out.append("};\n")
    out += write_call(library, interface)
    base = f"&k{interface.base}" if interface.base in library.interfaces else "nullptr"
    out.append(f"const InterfaceInfo k{name} = {{OLESTR(\"{name}\"), &IID_{name}, {base}, "
               f"{cpp.string_text(interface.help)}, k{name}Members, &Call{name}}};\n")
    return out


def write_call(library, interface, write_argument=None):
    """The function that calls a member by its index; write_argument may replace argument()."""
    name, write_argument = interface.name, write_argument or argument
    out = [f"HRESULT Call{name}(void* self, std::size_t member, [[maybe_unused]] Slot* a) {{",
           f"  auto* const object = static_cast<{name}*>(self);",
           "  switch (member) {"]
    for index, member in enumerate(interface.members):
        arguments = ", ".join(write_argument(library, p, i) for i, p in enumerate(member.parameters))
        out.append(f"    case {index}:  // {member.source}")
        out.append(f"      return object->{member.function}({arguments});")
    out.append("    default:\n      return DISP_E_MEMBERNOTFOUND;\n  }\n}\n")
    return out


def parameter(library, parameter_):
    type_ = parameter_.type
    if type_.name in library.interfaces:
        vartype, reference, pointers = "VT_DISPATCH", f"&k{type_.name}", type_.pointers - 1
        enumeration = "nullptr"
    elif type_.name in library.enumerations:
        vartype, reference, pointers = "VT_I4", "nullptr", type_.pointers
        enumeration = f"&k{type_.name}"
    else:
        vartype, reference, pointers = VARTYPES[type_.name], "nullptr", type_.pointers
        enumeration = "nullptr"
    array = "true" if type_.is_array else "false"
    flags = [{"in": "kIn", "out": "kOut", "retval": "kRetval", "optional": "kOptional"}[d]
             for d in parameter_.directions]
    return (f"{{OLESTR(\"{parameter_.name}\"), {{{vartype}, {array}, {reference}, {enumeration}}}, "
            f"{pointers}, {' | '.join(flags)}}}")


def argument(library, parameter_, index):
    """The expression that hands slot number index to the method."""
    type_, slot = parameter_.type, f"a[{index}]"
    if type_.name in library.interfaces:
        return (f"reinterpret_cast<{type_.name}**>(&{slot}.object)" if type_.pointers == 2
                else f"static_cast<{type_.name}*>({slot}.object)")
    if type_.is_array:
        return f"&{slot}.array" if type_.pointers else f"{slot}.array"
    if type_.name in library.enumerations:
        return (f"reinterpret_cast<{type_.name}*>(&{slot}.int32)" if type_.pointers
                else f"static_cast<{type_.name}>({slot}.int32)")
    field = f"{slot}.{SLOTS[type_.name]}"
    if not type_.pointers:
        return field
    if "optional" in parameter_.directions:
        return f"{slot}.is_missing ? nullptr : &{field}"
    return f"&{field}"


def write_library(library):
    out = ["const EnumerationInfo* const kEnumerations[] = {"]
    out += [f"    &k{name}," for name in library.enumerations]
    out.append("};\nconst InterfaceInfo* const kInterfaces[] = {")
    out += [f"    &k{name}," for name in library.interfaces]
    out.append("};\nconst CoclassInfo kCoclasses[] = {")
    for coclass in library.coclasses.values():
        out.append(f"    {{OLESTR(\"{coclass.name}\"), &CLSID_{coclass.name}, "
                   f"&k{coclass.interface}, {cpp.string_text(coclass.help)}}},")
    major, minor = library.version.split(".")
    out.append("};")
    out.append(f"const LibraryInfo kLibrary = {{OLESTR(\"{library.name}\"), &LIBID_{library.name}, "
               f"{major}, {minor}, 0x{library.lcid:04X}, {cpp.string_text(library.help)}, "
               "kEnumerations, kInterfaces, kCoclasses};\n")
    return out
