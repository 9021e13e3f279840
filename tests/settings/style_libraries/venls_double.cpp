// The host's resource library as the tests know it.

#include <windows.h>

#include <string>

extern "C" __declspec(dllexport) HMODULE VeGetResHandleW(const wchar_t* name) {
  // The libraries lie beside this one.
  HMODULE self = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&VeGetResHandleW), &self);
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(self, path, MAX_PATH);
  std::wstring file(path, length);
  file.replace(file.rfind(L'\\') + 1, std::wstring::npos, name);
  return LoadLibraryW(file.c_str());
}
