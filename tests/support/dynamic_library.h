#pragma once

#include <string>

namespace sab::testing {

/// Loads a library that the build put beside the tests; ends the tests if it is not there.
/// @param name without prefix and ending: "VeKit"
void* LoadLibraryBesideTests(const std::string& name);
void UnloadLibrary(void* library);

/// The full name of such a library, as the registry has it. UTF-8.
std::string PathBesideTests(const std::string& name);

void* AddressIn(void* library, const char* function);  ///< ends the tests if it is not exported

template <class Function>
Function FunctionIn(void* library, const char* name) {
  return reinterpret_cast<Function>(AddressIn(library, name));
}

}  // namespace sab::testing
