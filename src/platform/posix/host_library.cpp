#include "platform/host_library.h"

#include <dlfcn.h>

#include <initializer_list>

namespace sab {
namespace {

// CVeGlobalData::GetCCFL(IUnknown**) as the Itanium C++ ABI names it.
constexpr const char* kGetList = "_ZN13CVeGlobalData7GetCCFLEPP8IUnknown";

using GetListFunction = BOOL (*)(IUnknown**);

}  // namespace

IUnknown* HostClassFactoryList() noexcept {
  for (const char* name : {"libVeKit.so", "VeKit.so"}) {
    void* const library = dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
    if (!library) continue;
    IUnknown* list = nullptr;
    const auto get_list = reinterpret_cast<GetListFunction>(dlsym(library, kGetList));
    const bool found = get_list && get_list(&list);
    dlclose(library);
    if (found) return list;
  }
  return nullptr;
}

}  // namespace sab
