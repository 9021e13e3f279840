#pragma once

#include "base/text.h"

namespace sab {

/// For whom something is registered.
enum class RegistrationScope {
  kMachine,  ///< for every user; writing it may need rights
  kUser,     ///< for the current user
};

// The registration of the type library. Where the platform has no type libraries there is nothing
// to register, and both succeed.

/// Registers the type library, and removes what earlier versions of it have left.
/// @param module full path of the library that holds it
HRESULT RegisterTypeLibraryOf(const Text& module, RegistrationScope scope) noexcept;
/// A type library that is not registered, or for another library, is no failure and stays.
HRESULT UnregisterTypeLibraryOf(const Text& module, RegistrationScope scope) noexcept;

}  // namespace sab
