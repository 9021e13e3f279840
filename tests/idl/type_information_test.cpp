// Type information of the tables, as other platforms give it, against the type library in the DLL.

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "automation/table_type_lib.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

// The library's texts are GBK; the system reads them in the code page of the machine, which need
// not be Chinese.
Text HelpAsStored(TextView as_read) {
  const auto length = static_cast<int>(as_read.size());
  std::string bytes(as_read.size() * 4 + 1, '\0');
  BOOL is_strange = FALSE;
  const int count = WideCharToMultiByte(CP_ACP, 0, as_read.data(), length, bytes.data(),
                                        static_cast<int>(bytes.size()), nullptr, &is_strange);
  if (is_strange) return Text(as_read);  // it has not been read in that code page
  Text text(bytes.size(), L'\0');
  const int units =
      MultiByteToWideChar(936, 0, bytes.data(), count, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(units));
  return text;
}

template <class... Parts>
std::string Line(const Parts&... parts) {
  std::ostringstream line;
  ((line << parts << ' '), ...);
  return line.str() + '\n';
}

std::string TextOf(REFGUID guid) {
  OLECHAR text[39];
  StringFromGUID2(guid, text, 39);
  return ToUtf8(text);
}

template <class Documented, class Index>
std::string DocumentationOf(Documented& documented, Index index) {
  Bstr name;
  Bstr help;
  Bstr file;
  DWORD context = 77;
  const HRESULT result =
      documented.GetDocumentation(index, name.Put(), help.Put(), &context, file.Put());
  if (FAILED(result)) return "no documentation";
  return ToUtf8(name.View()) +
         (help.IsNull() ? " none " : " '" + ToUtf8(HelpAsStored(help.View())) + "' ") +
         std::to_string(context) + (file.IsNull() ? "" : " file");
}

// A referred type by what it is, since the numbers of references are each library's own affair.
std::string Referred(ITypeInfo& info, HREFTYPE reference) {
  ComPtr<ITypeInfo> referred;
  if (FAILED(info.GetRefTypeInfo(reference, referred.Put()))) return "no type";
  TYPEATTR* attributes = nullptr;
  if (FAILED(referred->GetTypeAttr(&attributes))) return "no attributes";
  const std::string text =
      TextOf(attributes->guid) + " kind " + std::to_string(attributes->typekind);
  referred->ReleaseTypeAttr(attributes);
  Bstr name;
  referred->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
  return ToUtf8(name.View()) + ' ' + text;
}

std::string TextOf(ITypeInfo& info, const TYPEDESC& type) {
  const std::string text = std::to_string(type.vt);
  if (type.vt == VT_PTR || type.vt == VT_SAFEARRAY) return text + ' ' + TextOf(info, *type.lptdesc);
  return type.vt == VT_USERDEFINED ? Referred(info, type.hreftype) : text;
}

std::string TextOf(ITypeInfo& info, const ELEMDESC& element) {
  return TextOf(info, element.tdesc) + " flags " + std::to_string(element.paramdesc.wParamFlags) +
         (element.paramdesc.pparamdescex ? " default" : "");
}

std::string NamesOf(ITypeInfo& info, MEMBERID member) {
  BSTR names[16] = {};
  UINT count = 0;
  std::string text = std::to_string(info.GetNames(member, names, 16, &count));
  for (UINT i = 0; i < count; ++i) {
    Bstr name;
    name.Attach(names[i]);
    text += ' ' + ToUtf8(name.View());
  }
  return text + ' ' + DocumentationOf(info, member);
}

std::string TextOf(ITypeInfo& info, const FUNCDESC& function) {
  std::string text =
      Line("function", function.memid, function.funckind, function.invkind, function.callconv,
           function.cParamsOpt, "at", function.oVft, function.cScodes, "flags", function.wFuncFlags,
           "gives", TextOf(info, function.elemdescFunc), NamesOf(info, function.memid));
  for (SHORT i = 0; i < function.cParams; ++i)
    text += Line("  takes", TextOf(info, function.lprgelemdescParam[i]));
  return text;
}

std::string TextOf(ITypeInfo& info, const VARDESC& constant) {
  return Line("constant", constant.memid, constant.wVarFlags, constant.varkind,
              constant.lpvarValue->vt, constant.lpvarValue->lVal,
              TextOf(info, constant.elemdescVar), NamesOf(info, constant.memid));
}

template <class Description>
std::string TextOfEach(ITypeInfo& info, UINT count,
                       HRESULT (STDMETHODCALLTYPE ITypeInfo::*get)(UINT, Description**),
                       void (STDMETHODCALLTYPE ITypeInfo::*release)(Description*)) {
  std::string text;
  for (UINT i = 0; i < count; ++i) {
    Description* description = nullptr;
    const HRESULT result = (info.*get)(i, &description);
    text += FAILED(result) ? "nothing\n" : TextOf(info, *description);
    if (SUCCEEDED(result)) (info.*release)(description);
  }
  return text;
}

std::string TextOf(ITypeInfo& info, const TYPEATTR& type) {
  std::string text = Line(
      TextOf(type.guid), "locale", type.lcid, "kind", type.typekind, "version", type.wMajorVerNum,
      type.wMinorVerNum, "size", type.cbSizeInstance, "of", type.cbAlignment, "table",
      type.cbSizeVft, "flags", type.wTypeFlags, type.memidConstructor, type.memidDestructor,
      type.dwReserved, type.lpstrSchema != nullptr, type.idldescType.wIDLFlags, type.tdescAlias.vt);
  text += TextOfEach(info, type.cFuncs, &ITypeInfo::GetFuncDesc, &ITypeInfo::ReleaseFuncDesc);
  text += TextOfEach(info, type.cVars, &ITypeInfo::GetVarDesc, &ITypeInfo::ReleaseVarDesc);
  // One more than it has.
  for (UINT i = 0; i <= type.cImplTypes; ++i) {
    HREFTYPE reference = 0;
    INT flags = 0;
    const HRESULT result = info.GetRefTypeOfImplType(i, &reference);
    const HRESULT flagged = info.GetImplTypeFlags(i, &flags);
    text += Line("implements", FAILED(result) ? std::to_string(result) : Referred(info, reference),
                 "flags", FAILED(flagged) ? flagged : flags);
  }
  return text;
}

// Everything that a type library tells, a text for each type by its name; that of the library
// itself is "".
std::map<std::string, std::string> TextsOf(ITypeLib& library) {
  std::map<std::string, std::string> texts;
  TLIBATTR* attributes = nullptr;
  if (SUCCEEDED(library.GetLibAttr(&attributes))) {
    texts[""] = Line(TextOf(attributes->guid), attributes->lcid, attributes->syskind,
                     attributes->wMajorVerNum, attributes->wMinorVerNum, attributes->wLibFlags,
                     DocumentationOf(library, -1));
    library.ReleaseTLibAttr(attributes);
  }
  for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> info;
    TYPEATTR* type = nullptr;
    if (FAILED(library.GetTypeInfo(i, info.Put())) || FAILED(info->GetTypeAttr(&type))) continue;
    const std::string name = DocumentationOf(library, static_cast<INT>(i));
    texts[name] = DocumentationOf(*info.Get(), MEMBERID_NIL) + ' ' + TextOf(*info.Get(), *type);
    info->ReleaseTypeAttr(type);
  }
  return texts;
}

TEST(TypeInformation, TheTablesSayInEveryFieldWhatTheTypeLibrarySays) {
  ComPtr<ITypeInfo> info;
  ComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, Created<IDispatch>(CLSID_VeAppParser)->GetTypeInfo(0, 0, info.Put()));
  ASSERT_EQ(S_OK, info->GetContainingTypeLib(library.Put(), nullptr));
  const auto of_library = TextsOf(*library.Get());
  TableTypeLib* const tables = new TableTypeLib;
  const auto of_tables = TextsOf(*tables);
  tables->Release();
  EXPECT_EQ(173U, of_library.size());
  EXPECT_EQ(of_library.size(), of_tables.size());
  for (const auto& [name, text] : of_library) {
    const auto found = of_tables.find(name);
    EXPECT_EQ(text, found == of_tables.end() ? "nothing" : found->second);
  }
}

}  // namespace
}  // namespace sab::testing
