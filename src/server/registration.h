#pragma once

#include <span>

#include "platform/type_library_registration.h"
#include "server/class_entry.h"

namespace sab {

/// Registers the module, then each class in order, then the type library; stops at the first
/// failure. Where the registry is a file, nothing of it is written then. The thread's locale is the
/// system's meanwhile, so that the scripts mean the same for every user.
/// @return a failure with error info that names the script, its line and column, or the key
HRESULT RegisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept;

/// Removes what RegisterServer of this very library wrote in that scope: classes, type library,
/// module. Classes that are registered for another library, such as a copy elsewhere, stay. Goes on
/// after a failure, but where the registry is a file, nothing of it is written then.
/// @return the first failure
HRESULT UnregisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept;

}  // namespace sab
