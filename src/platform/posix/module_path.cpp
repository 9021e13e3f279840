#include "platform/module_path.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <memory>

#include "base/com_error.h"

namespace sab {

Text ModulePath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&ModulePath), &info) == 0 || !info.dli_fname) {
    throw ComError(E_FAIL, "The dynamic linker does not know where this library comes from.");
  }
  const std::unique_ptr<char, decltype(&free)> full(realpath(info.dli_fname, nullptr), &free);
  return FromUtf8(full ? full.get() : info.dli_fname);
}

}  // namespace sab
