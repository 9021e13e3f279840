#pragma once

#include <sabxml/com.h>

#include <string>
#include <string_view>

#include "text/ascii.h"
#include "text/utf.h"

namespace sab {

/// Automation text: UTF-16 code units of the platform's OLECHAR.
using Text = std::basic_string<OLECHAR>;
using TextView = std::basic_string_view<OLECHAR>;

/// UTF-16 to UTF-8; what is ill-formed becomes U+FFFD, here and in FromUtf8.
inline std::string ToUtf8(TextView text) { return text::ToUtf8(text); }
inline Text FromUtf8(std::string_view utf8) { return text::FromUtf8<OLECHAR>(utf8); }

/// Appends ASCII to automation text; a byte above 0x7F is not allowed.
inline void AppendAscii(Text& text, std::string_view ascii) {
  for (const char c : ascii) text.push_back(static_cast<OLECHAR>(static_cast<unsigned char>(c)));
}

/// Equal to an ASCII literal, unit by unit; case matters.
inline bool EqualsAscii(TextView text, std::string_view ascii) {
  if (text.size() != ascii.size()) return false;
  for (std::size_t i = 0; i < ascii.size(); ++i) {
    if (text[i] != static_cast<OLECHAR>(static_cast<unsigned char>(ascii[i]))) return false;
  }
  return true;
}

}  // namespace sab
