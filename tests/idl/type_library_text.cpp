#include "idl/type_library_text.h"

#include <sstream>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "idl/stored_help.h"

namespace sab::testing {
namespace {

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

std::string NamesOf(ITypeInfo& info, MEMBERID member) {
  BSTR names[16] = {};
  UINT count = 0;
  std::string text = std::to_string(info.GetNames(member, names, 16, &count));
  for (UINT i = 0; i < count; ++i) {
    Bstr name;
    name.Attach(names[i]);
    text += ' ' + ToUtf8(name.View());
  }
  return text;
}

std::string TextOf(ITypeInfo& info, const FUNCDESC& function) {
  std::ostringstream out;
  out << "function " << function.memid << ' ' << function.funckind << ' ' << function.invkind << ' '
      << function.callconv << ' ' << function.cParamsOpt << " at " << function.oVft << ' '
      << function.cScodes << " flags " << function.wFuncFlags << " gives "
      << TextOf(info, function.elemdescFunc.tdesc) << ' '
      << function.elemdescFunc.paramdesc.wParamFlags << ' ' << NamesOf(info, function.memid) << ' '
      << DocumentationOf(info, function.memid) << '\n';
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    out << "  takes " << TextOf(info, element.tdesc) << " flags " << element.paramdesc.wParamFlags
        << (element.paramdesc.pparamdescex ? " default\n" : "\n");
  }
  return out.str();
}

std::string TextOf(ITypeInfo& info, const VARDESC& constant) {
  std::ostringstream out;
  out << "constant " << constant.memid << ' ' << constant.wVarFlags << ' ' << constant.varkind
      << ' ' << constant.lpvarValue->vt << ' ' << constant.lpvarValue->lVal << ' '
      << TextOf(info, constant.elemdescVar.tdesc) << ' '
      << constant.elemdescVar.paramdesc.wParamFlags << ' ' << NamesOf(info, constant.memid) << ' '
      << DocumentationOf(info, constant.memid) << '\n';
  return out.str();
}

std::string TextOf(ITypeInfo& info, const TYPEATTR& type) {
  std::ostringstream out;
  out << TextOf(type.guid) << " locale " << type.lcid << " kind " << type.typekind << " version "
      << type.wMajorVerNum << '.' << type.wMinorVerNum << " size " << type.cbSizeInstance << " of "
      << type.cbAlignment << " table " << type.cbSizeVft << " flags " << type.wTypeFlags << ' '
      << type.memidConstructor << ' ' << type.memidDestructor << ' ' << type.dwReserved << ' '
      << (type.lpstrSchema != nullptr) << type.idldescType.wIDLFlags << ' ' << type.tdescAlias.vt
      << '\n';
  for (UINT i = 0; i < type.cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    const HRESULT result = info.GetFuncDesc(i, &function);
    out << (FAILED(result) ? "no function\n" : TextOf(info, *function));
    if (SUCCEEDED(result)) info.ReleaseFuncDesc(function);
  }
  for (UINT i = 0; i < type.cVars; ++i) {
    VARDESC* constant = nullptr;
    const HRESULT result = info.GetVarDesc(i, &constant);
    out << (FAILED(result) ? "no constant\n" : TextOf(info, *constant));
    if (SUCCEEDED(result)) info.ReleaseVarDesc(constant);
  }
  // One more than it has.
  for (UINT i = 0; i <= type.cImplTypes; ++i) {
    HREFTYPE reference = 0;
    INT flags = 0;
    const HRESULT result = info.GetRefTypeOfImplType(i, &reference);
    out << "implements " << (FAILED(result) ? std::to_string(result) : Referred(info, reference));
    const HRESULT flagged = info.GetImplTypeFlags(i, &flags);
    out << " flags " << (FAILED(flagged) ? flagged : flags) << '\n';
  }
  return out.str();
}

}  // namespace

std::map<std::string, std::string> TextsOf(ITypeLib& library) {
  std::map<std::string, std::string> texts;
  TLIBATTR* attributes = nullptr;
  if (SUCCEEDED(library.GetLibAttr(&attributes))) {
    std::ostringstream out;
    out << TextOf(attributes->guid) << ' ' << attributes->lcid << ' ' << attributes->syskind << ' '
        << attributes->wMajorVerNum << '.' << attributes->wMinorVerNum << ' '
        << attributes->wLibFlags << ' ' << DocumentationOf(library, -1);
    texts[""] = out.str();
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

}  // namespace sab::testing
