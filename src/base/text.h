#pragma once

#include <sabxml/com.h>

#include <string>
#include <string_view>

namespace sab {

/// Automation text: UTF-16 code units of the platform's OLECHAR.
using Text = std::basic_string<OLECHAR>;
using TextView = std::basic_string_view<OLECHAR>;

/// UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD, so the result is always valid UTF-8.
std::string ToUtf8(TextView text);

/// UTF-8 to UTF-16. Bytes that are not UTF-8 become U+FFFD, one for each maximal ill-formed part.
Text FromUtf8(std::string_view utf8);

/// Appends ASCII to automation text; a byte above 0x7F is not allowed.
void AppendAscii(Text& text, std::string_view ascii);

/// Equal to an ASCII literal, unit by unit; case matters.
inline bool EqualsAscii(TextView text, std::string_view ascii) {
  if (text.size() != ascii.size()) return false;
  for (std::size_t i = 0; i < ascii.size(); ++i) {
    if (text[i] != static_cast<OLECHAR>(static_cast<unsigned char>(ascii[i]))) return false;
  }
  return true;
}

/// Equal to an ASCII literal when the letters A to Z count as a to z.
inline bool EqualsAsciiIgnoringCase(TextView text, std::string_view ascii) {
  if (text.size() != ascii.size()) return false;
  const auto lower = [](unsigned unit) { return unit >= 'A' && unit <= 'Z' ? unit + 32U : unit; };
  for (std::size_t i = 0; i < ascii.size(); ++i) {
    if (lower(text[i]) != lower(static_cast<unsigned char>(ascii[i]))) return false;
  }
  return true;
}

}  // namespace sab
