#include "platform/script_resource.h"

#include <sabxml/com.h>

#include "base/com_error.h"

namespace sab {

std::string_view LoadScript(ScriptResource script) {
  HMODULE module = nullptr;
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&LoadScript), &module);
  const HRSRC found =
      FindResourceW(module, MAKEINTRESOURCEW(static_cast<WORD>(script)), L"REGISTRY");
  const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
  const void* const data = loaded ? LockResource(loaded) : nullptr;
  if (!data) {
    throw ComError(HRESULT_FROM_WIN32(GetLastError()),
                   "A registration script is missing from the library: install it again.");
  }
  return {static_cast<const char*>(data), SizeofResource(module, found)};
}

}  // namespace sab
