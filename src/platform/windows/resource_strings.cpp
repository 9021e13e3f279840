#include "platform/resource_strings.h"

namespace sab {

ResourceStrings::ResourceStrings(TextView library_name) {
  const HMODULE host = GetModuleHandleW(L"VeNls.dll");
  if (!host) return;
  using GetHandleFunction = HMODULE(__cdecl*)(const wchar_t*);
  const auto get_handle = reinterpret_cast<GetHandleFunction>(
      reinterpret_cast<void*>(GetProcAddress(host, "VeGetResHandleW")));
  if (get_handle) library_ = get_handle(Text(library_name).c_str());
}

Text ResourceStrings::At(unsigned id) const {
  if (!library_) return {};
  // Without room for a copy the system gives the place of the string itself.
  const wchar_t* text = nullptr;
  const int length =
      LoadStringW(static_cast<HMODULE>(library_), id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? Text(text, static_cast<std::size_t>(length)) : Text();
}

}  // namespace sab
