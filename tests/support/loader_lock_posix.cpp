// For a program that ThreadSanitizer watches while libraries are opened and closed.
#include <dlfcn.h>

#include <mutex>

namespace {
// The loader constructs a library's objects in one thread's dlopen and destroys them in another's
// dlclose, in turn under a lock of its own, which ThreadSanitizer does not see. It sees this one.
std::recursive_mutex loading;

template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
}  // namespace

extern "C" __attribute__((visibility("default"))) void* dlopen(const char* name,
                                                               int flags) noexcept {
  const std::lock_guard guard(loading);
  return Next<decltype(dlopen)>("dlopen")(name, flags);
}

extern "C" __attribute__((visibility("default"))) int dlclose(void* library) noexcept {
  const std::lock_guard guard(loading);
  return Next<decltype(dlclose)>("dlclose")(library);
}
