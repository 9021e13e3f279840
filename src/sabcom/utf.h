#pragma once

#include <string>
#include <string_view>

#include "text/utf.h"

namespace sabcom {

/// UTF-16 to UTF-8 and back; what is ill-formed becomes U+FFFD.
inline std::string ToUtf8(std::u16string_view text) { return sab::text::ToUtf8(text); }
inline std::u16string FromUtf8(std::string_view utf8) {
  return sab::text::FromUtf8<char16_t>(utf8);
}

/// Key and value names as they are compared: upper case of the Basic Multilingual Plane.
std::u16string Folded(std::u16string_view name);

}  // namespace sabcom
