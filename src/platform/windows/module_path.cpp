#include "platform/module_path.h"

#include "base/com_error.h"

namespace sab {

Text ModulePath() {
  HMODULE module = nullptr;
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&ModulePath), &module)) {
    throw ComError(HRESULT_FROM_WIN32(GetLastError()), "The loader does not know this library.");
  }
  Text path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) {
      throw ComError(HRESULT_FROM_WIN32(GetLastError()), "The path of this library is unknown.");
    }
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

bool IsSamePath(const Text& a, const Text& b) {
  return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace sab
