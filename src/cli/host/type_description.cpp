#include "cli/host/type_description.h"

#include <SabXmlParser.h>
#include <sabxml/custom_print.h>

#include <algorithm>
#include <array>

namespace sabxml::cli {
namespace {

struct Documentation {
  std::string name;
  std::string help;
};

Documentation DocumentationOf(ITypeInfo& info, MEMBERID member) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  info.GetDocumentation(member, &name, &help, nullptr, nullptr);
  Documentation documentation{ToUtf8(name), ToUtf8(help)};
  SysFreeString(name);
  SysFreeString(help);
  return documentation;
}

// A type as the definition of the interface writes it.
std::string TypeText(ITypeInfo& info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeText(info, *type.lptdesc) + "*";
    case VT_SAFEARRAY:
      return "SAFEARRAY(" + TypeText(info, *type.lptdesc) + ")";
    case VT_USERDEFINED: {
      ComPtr<ITypeInfo> referred;
      if (FAILED(info.GetRefTypeInfo(type.hreftype, referred.Put()))) return "GUID";
      return NameOf(*referred.Get());
    }
    default:
      break;
  }
  static constexpr struct {
    VARTYPE type;
    const char* text;
  } kTypes[] = {{VT_BSTR, "BSTR"},
                {VT_BOOL, "VARIANT_BOOL"},
                {VT_I2, "short"},
                {VT_I4, "long"},
                {VT_INT, "int"},
                {VT_UI2, "unsigned short"},
                {VT_UI4, "unsigned long"},
                {VT_I8, "LONG_PTR"},
                {VT_UI8, "ULONG_PTR"},
                {VT_R4, "float"},
                {VT_R8, "double"},
                {VT_VARIANT, "VARIANT"},
                {VT_DISPATCH, "IDispatch*"},
                {VT_UNKNOWN, "IUnknown*"}};
  for (const auto& known : kTypes) {
    if (known.type == type.vt) return known.text;
  }
  return "type " + std::to_string(type.vt);
}

MemberDescription DescribeMember(ITypeInfo& info, const FUNCDESC& function) {
  MemberDescription member;
  member.id = function.memid;
  member.kind = function.invkind == INVOKE_FUNC          ? "method"
                : function.invkind == INVOKE_PROPERTYGET ? "get"
                                                         : "put";
  const Documentation documentation = DocumentationOf(info, function.memid);
  member.name = documentation.name;
  member.help = documentation.help;
  if (function.elemdescFunc.tdesc.vt != VT_VOID) {
    member.result = TypeText(info, function.elemdescFunc.tdesc);
  }
  std::array<BSTR, 16> names{};
  UINT count = 0;
  info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &count);
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    const USHORT flags = element.paramdesc.wParamFlags;
    const auto index = static_cast<UINT>(i) + 1;
    member.parameters.push_back({index < count ? ToUtf8(names[index]) : "value",
                                 TypeText(info, element.tdesc), (flags & PARAMFLAG_FIN) != 0,
                                 (flags & PARAMFLAG_FOUT) != 0, (flags & PARAMFLAG_FOPT) != 0});
  }
  for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
  return member;
}

template <class Visit>
void ForEachType(ITypeLib& library, const Visit& visit) {
  for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
    TYPEKIND kind = TKIND_MAX;
    ComPtr<ITypeInfo> info;
    HRESULT result = library.GetTypeInfoType(i, &kind);
    if (SUCCEEDED(result)) result = library.GetTypeInfo(i, info.Put());
    if (FAILED(result)) Fail(result, "reading the type information");
    visit(*info.Get(), kind);
  }
}

std::string TextOf(REFGUID identifier) {
  OLECHAR text[40];
  StringFromGUID2(identifier, text, 40);
  return ToUtf8(sab::TextView(text));
}

ClassDescription HeadOf(ITypeInfo& info) {
  ClassDescription description;
  const Documentation documentation = DocumentationOf(info, MEMBERID_NIL);
  description.name = documentation.name;
  description.help = documentation.help;
  TYPEATTR* attributes = nullptr;
  if (FAILED(info.GetTypeAttr(&attributes))) return description;
  description.identifier = TextOf(attributes->guid);
  if (attributes->guid == CLSID_VeCustomPTParser) {
    description.registered_identifier = TextOf(CLSID_VeCustomPTParserRegistered);
  }
  info.ReleaseTypeAttr(attributes);
  return description;
}

}  // namespace

std::string MemberDescription::Signature() const {
  std::string text = name;
  if (kind == "method") {
    text += '(';
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      const ParameterDescription& parameter = parameters[i];
      text += i ? ", [" : "[";
      text += parameter.is_in ? (parameter.is_out ? "in, out" : "in") : "out";
      text += parameter.is_optional ? ", optional] " : "] ";
      text += parameter.type + " " + parameter.name;
    }
    text += ')';
  }
  const std::string type = kind == "put" ? parameters.front().type : result;
  return type.empty() ? text : text + ": " + type;
}

std::size_t MemberDescription::InputCount() const {
  return static_cast<std::size_t>(
      std::count_if(parameters.begin(), parameters.end(),
                    [](const ParameterDescription& parameter) { return parameter.is_in; }));
}

std::string NameOf(ITypeInfo& info) { return DocumentationOf(info, MEMBERID_NIL).name; }

std::vector<MemberDescription> DescribeMembers(ITypeInfo& info) {
  TYPEATTR* attributes = nullptr;
  const HRESULT result = info.GetTypeAttr(&attributes);
  if (FAILED(result)) Fail(result, "reading the type information");
  const WORD count = attributes->cFuncs;
  info.ReleaseTypeAttr(attributes);
  std::vector<MemberDescription> members;
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info.GetFuncDesc(i, &function))) continue;
    // The members of IUnknown and IDispatch have these identifiers.
    const bool is_inherited = (static_cast<unsigned>(function->memid) & 0xFFFE0000U) == 0x60000000U;
    if (!is_inherited) members.push_back(DescribeMember(info, *function));
    info.ReleaseFuncDesc(function);
  }
  return members;
}

std::vector<ClassDescription> DescribeClasses(ITypeLib& library) {
  std::vector<ClassDescription> classes;
  ForEachType(library, [&classes](ITypeInfo& info, TYPEKIND kind) {
    if (kind != TKIND_COCLASS) return;
    ClassDescription& description = classes.emplace_back(HeadOf(info));
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> interface_;
    if (FAILED(info.GetRefTypeOfImplType(0, &reference)) ||
        FAILED(info.GetRefTypeInfo(reference, interface_.Put()))) {
      return;
    }
    description.interface_name = NameOf(*interface_.Get());
    description.members = DescribeMembers(*interface_.Get());
  });
  return classes;
}

std::vector<ClassDescription> DescribeInterfaces(ITypeLib& library) {
  std::vector<ClassDescription> interfaces;
  ForEachType(library, [&interfaces](ITypeInfo& info, TYPEKIND kind) {
    if (kind != TKIND_DISPATCH && kind != TKIND_INTERFACE) return;
    interfaces.emplace_back(HeadOf(info)).members = DescribeMembers(info);
  });
  return interfaces;
}

}  // namespace sabxml::cli
