#include "automation/table_type_comp.h"

#include <new>

#include "automation/function_description.h"
#include "automation/table_type_info.h"
#include "automation/table_type_lib.h"

namespace sab {
namespace {

// A member of an interface, which the flags may want as a method or as a way to use a property.
HRESULT BindMember(UINT type, TextView name, WORD flags, ITypeInfo** info, DESCKIND* kind,
                   BINDPTR* bound) {
  bool is_known = false;
  UINT index = 0;
  for (const MemberInfo* member = nullptr; (member = MemberOf(type, index)); ++index) {
    if (!IsSameName(member->name, name)) continue;
    is_known = true;
    if (flags != 0 && (flags & InvokeKindOf(*member)) == 0) continue;
    HRESULT result = TableTypeLib().GetTypeInfo(type, info);
    if (SUCCEEDED(result)) result = (*info)->GetFuncDesc(index, &bound->lpfuncdesc);
    if (SUCCEEDED(result)) *kind = DESCKIND_FUNCDESC;
    return result;
  }
  return is_known ? TYPE_E_TYPEMISMATCH : S_OK;
}

HRESULT BindConstant(UINT type, TextView name, ITypeInfo** info, DESCKIND* kind, BINDPTR* bound) {
  const auto values = DescribedType::At(type).enumeration->values;
  for (UINT index = 0; index < values.size(); ++index) {
    if (!IsSameName(values[index].name, name)) continue;
    HRESULT result = TableTypeLib().GetTypeInfo(type, info);
    if (SUCCEEDED(result)) result = (*info)->GetVarDesc(index, &bound->lpvardesc);
    if (SUCCEEDED(result)) *kind = DESCKIND_VARDESC;
    return result;
  }
  return S_OK;
}

}  // namespace

HRESULT TableTypeComp::Bind(LPOLESTR name, ULONG, WORD flags, ITypeInfo** info, DESCKIND* kind,
                            BINDPTR* bound) {
  if (!name || !info || !kind || !bound) return E_INVALIDARG;
  *info = nullptr;
  *kind = DESCKIND_NONE;
  *bound = {};
  HRESULT result = S_OK;
  for (UINT type = 0; type < DescribedType::Count() && *kind == DESCKIND_NONE; ++type) {
    if (type_ && type != *type_) continue;
    const DescribedType described = DescribedType::At(type);
    if (described.enumeration) {
      result = BindConstant(type, name, info, kind, bound);
    } else if (described.interface_ && type_) {
      result = BindMember(type, name, flags, info, kind, bound);
    }
    if (FAILED(result)) break;
  }
  if (FAILED(result) && *info) {
    (*info)->Release();
    *info = nullptr;
  }
  return result;
}

HRESULT TableTypeComp::BindType(LPOLESTR name, ULONG, ITypeInfo** info, ITypeComp** comp) {
  if (!name || !info || !comp) return E_INVALIDARG;
  *info = nullptr;
  *comp = nullptr;
  if (type_) return S_OK;  // a type has no types inside
  for (UINT type = 0; type < DescribedType::Count(); ++type) {
    if (!IsSameName(DescribedType::At(type).Name(), name)) continue;
    return TableTypeLib().GetTypeInfo(type, info);
  }
  return S_OK;
}

HRESULT CreateTypeComp(std::optional<UINT> type, ITypeComp** comp) {
  if (!comp) return E_INVALIDARG;
  *comp = new (std::nothrow) TableTypeComp(type);
  return *comp ? S_OK : E_OUTOFMEMORY;
}

}  // namespace sab
