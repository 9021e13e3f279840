#include "type_info.h"

#include <algorithm>
#include <new>

#include "base/bstr.h"
#include "platform/type_info.h"
#include "type_comp.h"

namespace sab {
namespace {

constexpr UINT kDispatchMembers = 7;  // of IUnknown and IDispatch, before an interface's own

// A parameter's type as type information nests it: a pointer to …, an array of …
struct ElementTypes {
  ELEMDESC element{};
  std::vector<std::unique_ptr<TYPEDESC>> inner;

  explicit ElementTypes(const ParameterInfo& parameter) {
    TYPEDESC type = BaseOf(parameter.type);
    if (parameter.type.is_array) Wrap(type, VT_SAFEARRAY);
    // An interface is passed by its address in any case.
    const int pointers = parameter.pointers + (parameter.type.interface_ ? 1 : 0);
    for (int i = 0; i < pointers; ++i) Wrap(type, VT_PTR);
    element.tdesc = type;
    element.paramdesc.wParamFlags = static_cast<USHORT>(
        (parameter.IsIn() ? PARAMFLAG_FIN : 0) | (parameter.IsOut() ? PARAMFLAG_FOUT : 0) |
        (parameter.IsRetval() ? PARAMFLAG_FRETVAL : 0) |
        (parameter.IsOptional() ? PARAMFLAG_FOPT : 0));
  }

 private:
  static TYPEDESC BaseOf(const ValueType& type) {
    TYPEDESC base{};
    base.vt = type.type;
    if (type.interface_) {
      base.vt = VT_USERDEFINED;
      base.hreftype = DescribedType::IndexOf(type.interface_);
    } else if (type.enumeration) {
      base.vt = VT_USERDEFINED;
      base.hreftype = DescribedType::IndexOf(type.enumeration);
    } else if (type.type == VT_USERDEFINED) {
      base.hreftype = ~HREFTYPE{0};  // GUID, which is no type of this library
    }
    return base;
  }
  void Wrap(TYPEDESC& type, VARTYPE outer) {
    inner.push_back(std::make_unique<TYPEDESC>(type));
    type = {};
    type.vt = outer;
    type.lptdesc = inner.back().get();
  }
};

// A function's description with all that it points to.
struct OwnedFunction {
  FUNCDESC description{};  // first, so that its address is the owner's
  std::vector<ELEMDESC> elements;
  std::vector<ElementTypes> types;
};
static_assert(offsetof(OwnedFunction, description) == 0);

struct OwnedConstant {
  VARDESC description{};
  VARIANT value{};
};

HRESULT CopyText(BSTR* out, TextView text) {
  if (!out) return S_OK;
  *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return *out ? S_OK : E_OUTOFMEMORY;
}

HRESULT Document(TextView name, const char* help, BSTR* name_out, BSTR* help_out, DWORD* context,
                 BSTR* file) {
  if (context) *context = 0;
  if (file) *file = nullptr;
  if (help_out) *help_out = nullptr;
  try {
    const HRESULT result = CopyText(name_out, name);
    return FAILED(result) ? result : CopyText(help_out, FromUtf8(help));
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

bool IsSameName(TextView a, TextView b) {
  const auto lower = [](OLECHAR c) {
    return c >= u'A' && c <= u'Z' ? static_cast<OLECHAR>(c + 32) : c;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](OLECHAR x, OLECHAR y) { return lower(x) == lower(y); });
}

const MemberInfo* MemberOf(UINT type, std::size_t index) {
  const TableTypeInfo info(type);
  return index < info.MemberCount() ? info.MemberAt(index) : nullptr;
}

INVOKEKIND InvokeKindOf(const MemberInfo& member) {
  switch (member.kind) {
    case MemberKind::kPropertyGet:
      return INVOKE_PROPERTYGET;
    case MemberKind::kPropertyPut:
      return INVOKE_PROPERTYPUT;
    default:
      return INVOKE_FUNC;
  }
}

// --- DescribedType ---

UINT DescribedType::Count() {
  const LibraryInfo& library = TheLibrary();
  return static_cast<UINT>(library.enumerations.size() + library.interfaces.size() +
                           library.coclasses.size());
}

DescribedType DescribedType::At(UINT index) {
  const LibraryInfo& library = TheLibrary();
  std::size_t i = index;
  if (i < library.enumerations.size()) return {library.enumerations[i], nullptr, nullptr};
  i -= library.enumerations.size();
  if (i < library.interfaces.size()) return {nullptr, library.interfaces[i], nullptr};
  return {nullptr, nullptr, &library.coclasses[i - library.interfaces.size()]};
}

UINT DescribedType::IndexOf(const InterfaceInfo* interface_) {
  UINT index = 0;
  while (At(index).interface_ != interface_) ++index;
  return index;
}

UINT DescribedType::IndexOf(const EnumerationInfo* enumeration) {
  UINT index = 0;
  while (At(index).enumeration != enumeration) ++index;
  return index;
}

TYPEKIND DescribedType::Kind() const {
  return enumeration ? TKIND_ENUM : interface_ ? TKIND_DISPATCH : TKIND_COCLASS;
}

const OLECHAR* DescribedType::Name() const {
  return enumeration ? enumeration->name : interface_ ? interface_->name : coclass->name;
}

const char* DescribedType::Help() const {
  return enumeration ? enumeration->help : interface_ ? interface_->help : coclass->help;
}

const GUID& DescribedType::Guid() const {
  return enumeration ? *enumeration->guid : interface_ ? *interface_->iid : *coclass->clsid;
}

// --- TableTypeInfo ---

std::size_t TableTypeInfo::MemberCount() const {
  std::size_t count = 0;
  for (const InterfaceInfo* level = type_.interface_; level; level = level->base) {
    count += level->members.size();
  }
  return count;
}

const MemberInfo* TableTypeInfo::MemberAt(std::size_t index) const {
  std::size_t end = MemberCount();
  for (const InterfaceInfo* level = type_.interface_; level; level = level->base) {
    end -= level->members.size();
    if (index >= end) return &level->members[index - end];
  }
  return nullptr;
}

const MemberInfo* TableTypeInfo::FindMember(MEMBERID id) const {
  for (const InterfaceInfo* level = type_.interface_; level; level = level->base) {
    for (const MemberInfo& member : level->members) {
      if (member.id == id) return &member;
    }
  }
  return nullptr;
}

HRESULT TableTypeInfo::GetTypeAttr(TYPEATTR** attributes) {
  if (!attributes) return E_INVALIDARG;
  *attributes = new (std::nothrow) TYPEATTR{};
  if (!*attributes) return E_OUTOFMEMORY;
  TYPEATTR& out = **attributes;
  const LibraryInfo& library = TheLibrary();
  out.guid = type_.Guid();
  out.lcid = library.locale;
  out.memidConstructor = out.memidDestructor = MEMBERID_NIL;
  out.cbSizeInstance = type_.enumeration ? sizeof(INT) : sizeof(void*);
  out.cbAlignment = static_cast<WORD>(out.cbSizeInstance);
  out.typekind = type_.Kind();
  out.wMajorVerNum = library.major_version;
  out.wMinorVerNum = library.minor_version;
  out.cFuncs = static_cast<WORD>(MemberCount());
  if (type_.enumeration) out.cVars = static_cast<WORD>(type_.enumeration->values.size());
  out.cImplTypes = type_.enumeration ? 0 : 1;
  if (type_.interface_) {
    out.wTypeFlags =
        TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE;
    out.cbSizeVft = kDispatchMembers * sizeof(void*);
  } else if (type_.coclass) {
    out.wTypeFlags = TYPEFLAG_FCANCREATE;
  }
  return S_OK;
}

HRESULT TableTypeInfo::GetTypeComp(ITypeComp** comp) { return CreateTypeComp(index_, comp); }

HRESULT TableTypeInfo::GetFuncDesc(UINT index, FUNCDESC** description) try {
  if (!description) return E_INVALIDARG;
  *description = nullptr;
  if (index >= MemberCount()) return TYPE_E_ELEMENTNOTFOUND;
  const MemberInfo& member = *MemberAt(index);
  auto owned = std::make_unique<OwnedFunction>();
  for (const ParameterInfo& parameter : member.parameters) {
    owned->types.emplace_back(parameter);
    owned->elements.push_back(owned->types.back().element);
  }
  FUNCDESC& out = owned->description;
  out.memid = member.id;
  out.lprgelemdescParam = owned->elements.data();
  out.funckind = FUNC_DISPATCH;
  out.invkind = InvokeKindOf(member);
  out.callconv = CC_STDCALL;
  out.cParams = static_cast<SHORT>(member.parameters.size());
  out.elemdescFunc.tdesc.vt = VT_VOID;
  // As a dispatch interface has it: the return value in the place of its parameter.
  if (!member.parameters.empty() && member.parameters.back().IsRetval()) {
    --out.cParams;
    const TYPEDESC& last = owned->elements.back().tdesc;
    out.elemdescFunc.tdesc = last.vt == VT_PTR ? *last.lptdesc : last;
  }
  for (SHORT i = out.cParams;
       i-- > 0 && member.parameters[static_cast<std::size_t>(i)].IsOptional();) {
    ++out.cParamsOpt;
  }
  *description = &owned.release()->description;
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

void TableTypeInfo::ReleaseFuncDesc(FUNCDESC* description) {
  delete reinterpret_cast<OwnedFunction*>(description);
}

HRESULT TableTypeInfo::GetVarDesc(UINT index, VARDESC** description) {
  if (!description) return E_INVALIDARG;
  *description = nullptr;
  if (!type_.enumeration || index >= type_.enumeration->values.size()) {
    return TYPE_E_ELEMENTNOTFOUND;
  }
  auto* const owned = new (std::nothrow) OwnedConstant;
  if (!owned) return E_OUTOFMEMORY;
  owned->value.vt = VT_I4;
  owned->value.lVal = type_.enumeration->values[index].value;
  owned->description.memid = static_cast<MEMBERID>(0x40000000 + index);
  owned->description.lpvarValue = &owned->value;
  owned->description.elemdescVar.tdesc.vt = VT_I4;
  owned->description.varkind = VAR_CONST;
  *description = &owned->description;
  return S_OK;
}

void TableTypeInfo::ReleaseVarDesc(VARDESC* description) {
  delete reinterpret_cast<OwnedConstant*>(description);
}

HRESULT TableTypeInfo::GetNames(MEMBERID id, BSTR* names, UINT capacity, UINT* count) {
  if (!names || !count) return E_INVALIDARG;
  *count = 0;
  std::vector<TextView> found;
  try {
    if (type_.enumeration) {
      const auto index = static_cast<std::size_t>(id - 0x40000000);
      if (index < type_.enumeration->values.size()) {
        found.emplace_back(type_.enumeration->values[index].name);
      }
    } else if (const MemberInfo* const member = FindMember(id)) {
      found.emplace_back(member->name);
      std::span<const ParameterInfo> named = member->parameters;
      // The value of a property has no name of its own, nor has a return value.
      const bool is_put = member->kind == MemberKind::kPropertyPut;
      if (!named.empty() && (is_put || named.back().IsRetval()))
        named = named.first(named.size() - 1);
      for (const ParameterInfo& parameter : named) found.emplace_back(parameter.name);
    }
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  if (found.empty()) return TYPE_E_ELEMENTNOTFOUND;
  for (; *count < found.size() && *count < capacity; ++*count) {
    const HRESULT result = CopyText(&names[*count], found[*count]);
    if (FAILED(result)) return result;
  }
  return S_OK;
}

HRESULT TableTypeInfo::GetRefTypeOfImplType(UINT index, HREFTYPE* reference) {
  if (!reference) return E_INVALIDARG;
  if (index != 0) return TYPE_E_ELEMENTNOTFOUND;
  const InterfaceInfo* const target = type_.coclass      ? type_.coclass->default_interface
                                      : type_.interface_ ? type_.interface_->base
                                                         : nullptr;
  if (!target) return TYPE_E_ELEMENTNOTFOUND;  // IDispatch is no type of this library
  *reference = DescribedType::IndexOf(target);
  return S_OK;
}

HRESULT TableTypeInfo::GetImplTypeFlags(UINT index, INT* flags) {
  if (!flags) return E_INVALIDARG;
  if (index != 0 || type_.enumeration) return TYPE_E_ELEMENTNOTFOUND;
  *flags = type_.coclass ? IMPLTYPEFLAG_FDEFAULT : 0;
  return S_OK;
}

HRESULT TableTypeInfo::GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  std::fill(ids, ids + count, MEMBERID_NIL);
  for (const InterfaceInfo* level = type_.interface_; level; level = level->base) {
    for (const MemberInfo& member : level->members) {
      if (!IsSameName(member.name, names[0])) continue;
      ids[0] = member.id;
      for (UINT i = 1; i < count; ++i) {
        for (std::size_t p = 0; p < member.parameters.size(); ++p) {
          if (IsSameName(member.parameters[p].name, names[i])) ids[i] = static_cast<MEMBERID>(p);
        }
      }
      return std::find(ids, ids + count, MEMBERID_NIL) == ids + count ? S_OK : DISP_E_UNKNOWNNAME;
    }
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT TableTypeInfo::GetDocumentation(MEMBERID id, BSTR* name, BSTR* help, DWORD* context,
                                        BSTR* file) {
  if (id == MEMBERID_NIL) return Document(type_.Name(), type_.Help(), name, help, context, file);
  if (type_.enumeration) {
    const auto index = static_cast<std::size_t>(id - 0x40000000);
    if (index >= type_.enumeration->values.size()) return TYPE_E_ELEMENTNOTFOUND;
    const EnumerationValue& value = type_.enumeration->values[index];
    return Document(value.name, value.help, name, help, context, file);
  }
  const MemberInfo* const member = FindMember(id);
  return member ? Document(member->name, member->help, name, help, context, file)
                : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TableTypeInfo::GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) {
  return TableTypeLib().GetTypeInfo(reference, info);
}

HRESULT TableTypeInfo::GetContainingTypeLib(ITypeLib** library, UINT* index) {
  if (!library) return E_INVALIDARG;
  *library = new (std::nothrow) TableTypeLib;
  if (index) *index = index_;
  return *library ? S_OK : E_OUTOFMEMORY;
}

// --- TableTypeLib ---

HRESULT TableTypeLib::GetTypeInfo(UINT index, ITypeInfo** info) {
  if (!info) return E_INVALIDARG;
  *info = nullptr;
  if (index >= DescribedType::Count()) return TYPE_E_ELEMENTNOTFOUND;
  *info = new (std::nothrow) TableTypeInfo(index);
  return *info ? S_OK : E_OUTOFMEMORY;
}

HRESULT TableTypeLib::GetTypeInfoType(UINT index, TYPEKIND* kind) {
  if (!kind) return E_INVALIDARG;
  if (index >= DescribedType::Count()) return TYPE_E_ELEMENTNOTFOUND;
  *kind = DescribedType::At(index).Kind();
  return S_OK;
}

HRESULT TableTypeLib::GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) {
  if (!info) return E_INVALIDARG;
  *info = nullptr;
  for (UINT i = 0; i < DescribedType::Count(); ++i) {
    if (DescribedType::At(i).Guid() == guid) return GetTypeInfo(i, info);
  }
  return TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TableTypeLib::GetLibAttr(TLIBATTR** attributes) {
  if (!attributes) return E_INVALIDARG;
  const LibraryInfo& library = TheLibrary();
  *attributes = new (std::nothrow) TLIBATTR{*library.guid,         library.locale,        SYS_WIN64,
                                            library.major_version, library.minor_version, 0};
  return *attributes ? S_OK : E_OUTOFMEMORY;
}

HRESULT TableTypeLib::GetTypeComp(ITypeComp** comp) { return CreateTypeComp({}, comp); }

HRESULT TableTypeLib::GetDocumentation(INT index, BSTR* name, BSTR* help, DWORD* context,
                                       BSTR* file) {
  if (index == -1) {
    return Document(TheLibrary().name, TheLibrary().help, name, help, context, file);
  }
  if (index < 0 || static_cast<UINT>(index) >= DescribedType::Count())
    return TYPE_E_ELEMENTNOTFOUND;
  const DescribedType type = DescribedType::At(static_cast<UINT>(index));
  return Document(type.Name(), type.Help(), name, help, context, file);
}

HRESULT TableTypeLib::IsName(LPOLESTR name, ULONG, BOOL* is_name) {
  if (!name || !is_name) return E_INVALIDARG;
  *is_name = FALSE;
  for (UINT i = 0; i < DescribedType::Count(); ++i) {
    if (IsSameName(DescribedType::At(i).Name(), name)) *is_name = TRUE;
  }
  return S_OK;
}

HRESULT TableTypeLib::FindName(LPOLESTR name, ULONG, ITypeInfo** infos, MEMBERID* members,
                               USHORT* count) {
  if (!name || !infos || !members || !count) return E_INVALIDARG;
  USHORT found = 0;
  for (UINT i = 0; i < DescribedType::Count() && found < *count; ++i) {
    if (!IsSameName(DescribedType::At(i).Name(), name)) continue;
    const HRESULT result = GetTypeInfo(i, &infos[found]);
    if (FAILED(result)) return result;
    members[found++] = MEMBERID_NIL;
  }
  *count = found;
  return S_OK;
}

HRESULT GetTypeInfo(const InterfaceInfo& interface_, ITypeInfo** info) noexcept {
  return TableTypeLib().GetTypeInfo(DescribedType::IndexOf(&interface_), info);
}

HRESULT GetClassTypeInfo(REFCLSID clsid, ITypeInfo** info) noexcept {
  return TableTypeLib().GetTypeInfoOfGuid(clsid, info);
}

}  // namespace sab
