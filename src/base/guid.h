#pragma once

#include <sabxml/com.h>

#include <array>
#include <string_view>

#include "text/ascii.h"

namespace sab {

/// A constant identifier from its text, "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"; any other text does
/// not compile.
consteval GUID GuidOf(std::string_view text) {
  std::array<unsigned, 16> bytes{};
  std::size_t digits = 0;
  for (const char c : text) {
    if (c == '-') continue;
    const int digit = HexDigitValue(c);
    if (digit < 0) throw "not a hexadecimal digit";
    unsigned& byte = bytes.at(digits++ / 2);
    byte = byte * 16 + static_cast<unsigned>(digit);
  }
  if (digits != 32) throw "not an identifier";
  GUID guid{};
  guid.Data1 = bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
  guid.Data2 = static_cast<USHORT>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<USHORT>(bytes[6] << 8 | bytes[7]);
  for (std::size_t i = 0; i < 8; ++i) guid.Data4[i] = static_cast<UCHAR>(bytes[8 + i]);
  return guid;
}

}  // namespace sab
