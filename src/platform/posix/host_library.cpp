#include "platform/host_library.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>

#include <array>
#include <atomic>
#include <string_view>

namespace sab {
namespace {

// CVeGlobalData::GetCCFL(IUnknown**) as the Itanium C++ ABI names it.
constexpr const char* kGetList = "_ZN13CVeGlobalData7GetCCFLEPP8IUnknown";

using GetListFunction = BOOL (*)(IUnknown**);
using LoadCount = unsigned long long;

// How many libraries the process has ever loaded.
LoadCount CountLoads() {
  LoadCount count = 0;
  dl_iterate_phdr(
      [](dl_phdr_info* first, std::size_t, void* result) {
        *static_cast<LoadCount*>(result) = first->dlpi_adds;
        return 1;
      },
      &count);
  return count;
}

// A library that the process has under a file name, whatever its folder. One without a name of its
// own (SONAME) is known to the system by the path alone with which it was loaded.
void* OpenByFileName(std::string_view wanted) {
  struct Search {
    std::string_view wanted;
    std::array<char, PATH_MAX>
        path;  // not allocated: without memory the host's classes still count
  } search{wanted, {}};
  // Opening it waits until the walk is over, which holds a lock of the loader.
  const int is_found = dl_iterate_phdr(
      [](dl_phdr_info* library, std::size_t, void* result) {
        auto& found = *static_cast<Search*>(result);
        const std::string_view path = library->dlpi_name;
        if (path.substr(path.rfind('/') + 1) != found.wanted) return 0;
        if (path.size() >= found.path.size()) return 0;
        path.copy(found.path.data(), path.size());
        return 1;
      },
      &search);
  return is_found != 0 ? dlopen(search.path.data(), RTLD_LAZY | RTLD_NOLOAD) : nullptr;
}

// A name of the support library. Whether a name is in the process the system answers by opening
// every file that it could mean. Most processes never have it, and each new object asks; so what
// was missing is looked for again only when a library has been loaded since.
class LibraryName {
 public:
  explicit constexpr LibraryName(const char* name) : name_(name) {}

  /// The library, which the caller closes, or null.
  void* Open() {
    const LoadCount loads = CountLoads();
    if (missing_at_.load(std::memory_order_relaxed) == loads) return nullptr;
    void* library = OpenByFileName(name_);
    if (!library) library = dlopen(name_, RTLD_LAZY | RTLD_NOLOAD);
    if (!library) missing_at_.store(loads, std::memory_order_relaxed);
    return library;
  }

 private:
  static constexpr LoadCount kNever = ~LoadCount{0};

  const char* const name_;
  std::atomic<LoadCount> missing_at_{kNever};
};

}  // namespace

IUnknown* HostClassFactoryList() noexcept {
  static LibraryName names[] = {LibraryName("libVeKit.so"), LibraryName("VeKit.so")};
  for (LibraryName& name : names) {
    void* const library = name.Open();
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
