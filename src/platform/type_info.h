#pragma once

#include "base/interface_info.h"

namespace sab {

/// Type information of an interface: from the type library inside this library where the platform
/// has such, else made from the tables.
/// @param info receives a reference that the caller releases
HRESULT GetTypeInfo(const InterfaceInfo& interface_, ITypeInfo** info) noexcept;

}  // namespace sab
