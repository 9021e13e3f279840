#include "text/numbers.h"

#include "text/utf.h"

namespace sab::text {

std::int32_t ParseInt(std::string_view utf8) {
  const std::u16string units = FromUtf8<char16_t>(utf8);
  return ParseInt(std::u16string_view(units));
}

std::string WithAsciiDigits(std::string_view utf8) {
  std::u16string units = FromUtf8<char16_t>(utf8);
  for (char16_t& unit : units) {
    const int digit = DigitOf(unit);
    if (digit != kNoDigit) unit = static_cast<char16_t>('0' + digit);
  }
  return ToUtf8(std::u16string_view(units));
}

}  // namespace sab::text
