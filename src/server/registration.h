#pragma once

#include <span>

#include "server/class_entry.h"

namespace sab {

/// Registers the module, then each class in order, then the type library; stops at the first
/// failure. The thread's locale is the system's meanwhile, so that the scripts mean the same for
/// every user.
/// @return a failure with error info that names the script, its line and column, or the key
HRESULT RegisterServer(std::span<const ClassEntry> classes) noexcept;

/// Removes what RegisterServer wrote: classes, type library, module. Goes on after a failure.
/// @return the first failure
HRESULT UnregisterServer(std::span<const ClassEntry> classes) noexcept;

}  // namespace sab
