#pragma once

#include <sabxml/com.h>

#include <string>

#include "base/text.h"

namespace sab::testing {

/// A text of the registry: "(none)" without the key or, where one is named, the value; "(empty)"
/// for a key without a default value. All texts are UTF-8.
inline std::string RegistryText(const std::string& key, const std::string& value = {},
                                HKEY root = HKEY_CLASSES_ROOT) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, FromUtf8(key).c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return "(none)";
  }
  OLECHAR text[300] = {};
  DWORD size = sizeof text;
  const LSTATUS status = RegQueryValueExW(opened, value.empty() ? nullptr : FromUtf8(value).c_str(),
                                          nullptr, nullptr, reinterpret_cast<LPBYTE>(text), &size);
  RegCloseKey(opened);
  if (status != ERROR_SUCCESS) return value.empty() ? "(empty)" : "(none)";
  return ToUtf8(text);
}

}  // namespace sab::testing
