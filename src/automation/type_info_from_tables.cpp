#include "platform/type_info.h"

#include "automation/table_type_lib.h"

namespace sab {

HRESULT GetTypeInfo(const InterfaceInfo& interface_, ITypeInfo** info) noexcept {
  return TableTypeLib().GetTypeInfo(DescribedType::IndexOf(&interface_), info);
}

HRESULT GetClassTypeInfo(REFCLSID clsid, ITypeInfo** info) noexcept {
  return TableTypeLib().GetTypeInfoOfGuid(clsid, info);
}

}  // namespace sab
