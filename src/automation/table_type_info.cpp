#include "automation/table_type_info.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "automation/function_description.h"
#include "automation/table_type_comp.h"
#include "automation/table_type_lib.h"
#include "base/bstr.h"

namespace sab {
namespace {

constexpr UINT kDispatchMembers = 7;  // of IUnknown and IDispatch
constexpr UINT kFirstConstant = 0x40000000;

struct OwnedConstant {
  VARDESC description{};  // first, so that its address is the owner's
  VARIANT value{};
};
static_assert(offsetof(OwnedConstant, description) == 0);

// The number of an enumeration's value by its identifier, which may be any.
std::size_t ConstantIndex(MEMBERID id) { return static_cast<UINT>(id) - kFirstConstant; }

}  // namespace

HRESULT CopyDocumentation(TextView name, const char* help, BSTR* name_out, BSTR* help_out,
                          DWORD* context, BSTR* file) {
  if (context) *context = 0;
  if (file) *file = nullptr;
  if (help_out) *help_out = nullptr;
  if (name_out) *name_out = nullptr;
  try {
    Bstr name_copy;
    if (name_out) name_copy = Bstr(name);
    if (help_out && *help) *help_out = Bstr(FromUtf8(help)).Detach();
    if (name_out) *name_out = name_copy.Detach();
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

const MemberInfo* MemberOf(UINT type, std::size_t index) {
  const TableTypeInfo info(type);
  return index < info.MemberCount() ? info.MemberAt(index) : nullptr;
}

std::size_t TableTypeInfo::MemberCount() const {
  std::size_t count = 0;
  for (const InterfaceInfo* level = type_.interface_; level; level = BaseOf(*level)) {
    count += level->members.size();
  }
  return count;
}

const MemberInfo* TableTypeInfo::MemberAt(std::size_t index) const {
  std::size_t end = MemberCount();
  for (const InterfaceInfo* level = type_.interface_; level; level = BaseOf(*level)) {
    end -= level->members.size();
    if (index >= end) return &level->members[index - end];
  }
  return nullptr;
}

const MemberInfo* TableTypeInfo::FindMember(MEMBERID id) const {
  for (const InterfaceInfo* level = type_.interface_; level; level = BaseOf(*level)) {
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
  out.guid = type_.Guid();
  out.lcid = TheLibrary().locale;
  out.memidConstructor = out.memidDestructor = MEMBERID_NIL;
  out.cbSizeInstance = type_.enumeration ? sizeof(INT) : sizeof(void*);
  out.cbAlignment = static_cast<WORD>(out.cbSizeInstance);
  out.typekind = type_.Kind();
  out.cFuncs = static_cast<WORD>(MemberCount());
  if (type_.enumeration) out.cVars = static_cast<WORD>(type_.enumeration->values.size());
  out.cImplTypes = ImplTypeCount();
  if (type_.interface_) {
    out.wTypeFlags = TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FDISPATCHABLE;
    out.cbSizeVft = kDispatchMembers * sizeof(void*);
  } else if (type_.coclass) {
    out.wTypeFlags = TYPEFLAG_FCANCREATE;
    out.cbAlignment = 4;
  }
  return S_OK;
}

HRESULT TableTypeInfo::GetTypeComp(ITypeComp** comp) { return CreateTypeComp(index_, comp); }

HRESULT TableTypeInfo::GetFuncDesc(UINT index, FUNCDESC** description) try {
  if (!description) return E_INVALIDARG;
  *description = nullptr;
  if (index >= MemberCount()) return TYPE_E_ELEMENTNOTFOUND;
  *description = NewFunctionDescription(*MemberAt(index), index);
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

void TableTypeInfo::ReleaseFuncDesc(FUNCDESC* description) {
  DeleteFunctionDescription(description);
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
  owned->description.memid = static_cast<MEMBERID>(kFirstConstant + index);
  owned->description.lpvarValue = &owned->value;
  owned->description.elemdescVar.tdesc.vt = VT_INT;
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
      const auto index = ConstantIndex(id);
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
    const TextView name = found[*count];
    names[*count] = SysAllocStringLen(name.data(), static_cast<UINT>(name.size()));
    if (names[*count]) continue;
    while (*count > 0) SysFreeString(std::exchange(names[--*count], nullptr));
    return E_OUTOFMEMORY;
  }
  return S_OK;
}

WORD TableTypeInfo::ImplTypeCount() const { return type_.interface_ || type_.coclass ? 1 : 0; }

HRESULT TableTypeInfo::GetRefTypeOfImplType(UINT index, HREFTYPE* reference) {
  if (!reference) return E_INVALIDARG;
  if (index >= ImplTypeCount()) return TYPE_E_ELEMENTNOTFOUND;
  *reference = type_.coclass ? DescribedType::IndexOf(type_.coclass->default_interface)
                             : DescribedType::IndexOfDispatch();
  return S_OK;
}

HRESULT TableTypeInfo::GetImplTypeFlags(UINT index, INT* flags) {
  if (!flags) return E_INVALIDARG;
  if (index >= ImplTypeCount()) return TYPE_E_ELEMENTNOTFOUND;
  *flags = type_.coclass ? IMPLTYPEFLAG_FDEFAULT : 0;
  return S_OK;
}

HRESULT TableTypeInfo::GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  std::fill(ids, ids + count, MEMBERID_NIL);
  for (const InterfaceInfo* level = type_.interface_; level; level = BaseOf(*level)) {
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
  if (id == MEMBERID_NIL)
    return CopyDocumentation(type_.Name(), type_.Help(), name, help, context, file);
  if (type_.enumeration) {
    const auto index = ConstantIndex(id);
    if (index >= type_.enumeration->values.size()) return TYPE_E_ELEMENTNOTFOUND;
    const EnumerationValue& value = type_.enumeration->values[index];
    return CopyDocumentation(value.name, "", name, help, context, file);
  }
  const MemberInfo* const member = FindMember(id);
  return member ? CopyDocumentation(member->name, member->help, name, help, context, file)
                : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TableTypeInfo::GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) {
  if (!info) return E_INVALIDARG;
  *info = nullptr;
  if (reference >= DescribedType::CountReferred()) return TYPE_E_ELEMENTNOTFOUND;
  *info = new (std::nothrow) TableTypeInfo(reference);
  return *info ? S_OK : E_OUTOFMEMORY;
}

HRESULT TableTypeInfo::GetContainingTypeLib(ITypeLib** library, UINT* index) {
  if (!library) return E_INVALIDARG;
  *library = nullptr;
  if (type_.foreign) return E_NOTIMPL;
  *library = new (std::nothrow) TableTypeLib;
  if (index) *index = index_;
  return *library ? S_OK : E_OUTOFMEMORY;
}

}  // namespace sab
