#include <sabxml/com.h>

#include <cstdio>
#include <cstdlib>

#include "support/dynamic_library.h"

namespace sab::testing {
namespace {

template <class Pointer>
Pointer OrDie(Pointer pointer, const char* name) {
  if (!pointer) {
    std::fprintf(stderr, "%s: error %lu\n", name, GetLastError());
    std::abort();
  }
  return pointer;
}

}  // namespace

std::string PathBesideTests(const std::string& name) {
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string executable(path);
  return executable.substr(0, executable.find_last_of('\\') + 1) + name + ".dll";
}

void* LoadLibraryBesideTests(const std::string& name) {
  // The folder of the executable is the first in which the loader looks.
  return OrDie(LoadLibraryA((name + ".dll").c_str()), name.c_str());
}

void UnloadLibrary(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

void* AddressIn(void* library, const char* function) {
  return reinterpret_cast<void*>(
      OrDie(GetProcAddress(static_cast<HMODULE>(library), function), function));
}

}  // namespace sab::testing
