#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "support/dynamic_library.h"

namespace sab::testing {
namespace {

void* OrDie(void* pointer) {
  if (!pointer) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::abort();
  }
  return pointer;
}

}  // namespace

std::string PathBesideTests(const std::string& name) {
  return SAB_BUILD_FOLDER "/lib" + name + ".so";
}

void* LoadLibraryBesideTests(const std::string& name) {
  return OrDie(dlopen(PathBesideTests(name).c_str(), RTLD_NOW | RTLD_LOCAL));
}

void UnloadLibrary(void* library) { dlclose(library); }

void* AddressIn(void* library, const char* function) { return OrDie(dlsym(library, function)); }

}  // namespace sab::testing
