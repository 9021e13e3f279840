#pragma once

#include "base/interface_info.h"

namespace sab {

/// Type information of an interface: from the type library inside this library where the platform
/// has such, else made from the tables.
/// @param info receives a reference that the caller releases
HRESULT GetTypeInfo(const InterfaceInfo& interface_, ITypeInfo** info) noexcept;
/// The same of a class, by its identifier in the type library.
HRESULT GetClassTypeInfo(REFCLSID clsid, ITypeInfo** info) noexcept;

}  // namespace sab
