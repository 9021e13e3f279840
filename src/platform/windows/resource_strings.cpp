#include "platform/resource_strings.h"

namespace sab {

namespace {

Text StringOf(HMODULE library, unsigned id) {
  // Without room for a copy the system gives the place of the string itself.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(library, id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? Text(text, static_cast<std::size_t>(length)) : Text();
}

}  // namespace

ResourceStrings::ResourceStrings(TextView library_name) {
  const HMODULE host = GetModuleHandleW(L"VeNls.dll");
  if (!host) return;
  using GetHandleFunction = HMODULE(__cdecl*)(const wchar_t*);
  const auto get_handle = reinterpret_cast<GetHandleFunction>(
      reinterpret_cast<void*>(GetProcAddress(host, "VeGetResHandleW")));
  if (get_handle) library_ = get_handle(Text(library_name).c_str());
}

Text ResourceStrings::At(unsigned id) const {
  return library_ ? StringOf(static_cast<HMODULE>(library_), id) : Text();
}

Text OwnString(unsigned id) {
  HMODULE module = nullptr;
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&OwnString), &module)) return {};
  return StringOf(module, id);
}

}  // namespace sab
