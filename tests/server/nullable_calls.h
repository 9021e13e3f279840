#pragma once

#include "base/interface_info.h"

namespace sab::testing {

/// InterfaceInfo::call, but every place of a result that is_missing is handed over as null.
HRESULT CallNullable(const InterfaceInfo& info, void* self, std::size_t member, Slot* arguments);

}  // namespace sab::testing
