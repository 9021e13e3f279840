#include "platform/host_library.h"

namespace sab {
namespace {

// public: static int __cdecl CVeGlobalData::GetCCFL(IUnknown**) as Microsoft's compiler names it.
constexpr const char* kGetList = sizeof(void*) == 8
                                     ? "?GetCCFL@CVeGlobalData@@SAHPEAPEAUIUnknown@@@Z"
                                     : "?GetCCFL@CVeGlobalData@@SAHPAPAUIUnknown@@@Z";

using GetListFunction = BOOL(__cdecl*)(IUnknown**);

}  // namespace

IUnknown* HostClassFactoryList() noexcept {
  const HMODULE library = GetModuleHandleW(L"VeKit.dll");
  if (!library) return nullptr;
  const auto get_list =
      reinterpret_cast<GetListFunction>(reinterpret_cast<void*>(GetProcAddress(library, kGetList)));
  IUnknown* list = nullptr;
  return get_list && get_list(&list) ? list : nullptr;
}

}  // namespace sab
