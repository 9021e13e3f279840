#pragma once

#include <sabxml/com.h>
#include <sabxml/result_codes.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace sab {

/// "0x84000C06"
inline std::string ResultDigits(HRESULT code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
  return text;
}

/// What a result code of the server or of the component runtime means; empty for an unknown one.
inline std::string ResultWords(HRESULT code) {
  return sabxml::WordsOf(static_cast<std::uint32_t>(code));
}

}  // namespace sab
