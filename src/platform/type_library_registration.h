#pragma once

#include "base/text.h"

namespace sab {

// The registration of the type library. Where the platform has no type libraries there is nothing
// to register, and both succeed.

/// @param module full path of the library that holds it
HRESULT RegisterTypeLibraryOf(const Text& module) noexcept;
/// A type library that is not registered is no failure.
HRESULT UnregisterTypeLibraryOf(const Text& module) noexcept;

}  // namespace sab
