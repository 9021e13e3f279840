#pragma once

#include <span>

#include "platform/type_library_registration.h"
#include "server/class_entry.h"

namespace sab {

/// Registers the module, then each class in order, then the type library; stops at the first
/// failure. The thread's locale is the system's meanwhile, so that the scripts mean the same for
/// every user.
/// @return a failure with error info that names the script, its line and column, or the key
HRESULT RegisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept;

/// Removes what RegisterServer wrote in that scope: classes, type library, module. Goes on after a
/// failure.
/// @return the first failure
HRESULT UnregisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept;

}  // namespace sab
