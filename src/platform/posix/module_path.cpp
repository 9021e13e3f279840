#include "platform/module_path.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string>
#include <system_error>

#include "base/com_error.h"

namespace sab {

Text ModulePath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&ModulePath), &info) == 0 || !info.dli_fname) {
    throw ComError(E_FAIL, "The dynamic linker does not know where this library comes from.");
  }
  const std::unique_ptr<char, decltype(&free)> full(realpath(info.dli_fname, nullptr), &free);
  if (!full) {
    // What the linker was given may be relative, which means something else in another process.
    const int error = errno;
    throw ComError(error == ENOMEM ? E_OUTOFMEMORY : E_FAIL,
                   std::string(info.dli_fname) + ": the full path of this library is unknown: " +
                       std::generic_category().message(error));
  }
  return FromUtf8(full.get());
}

bool IsSamePath(const Text& a, const Text& b) {
  if (a == b) return true;
  struct stat one {};
  struct stat other {};
  return stat(ToUtf8(a).c_str(), &one) == 0 && stat(ToUtf8(b).c_str(), &other) == 0 &&
         one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace sab
