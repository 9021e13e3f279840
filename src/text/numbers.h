#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace sab::text {

// Numbers as Microsoft's C library reads them from wide characters (_wtoi), whatever the locale is.

inline constexpr int kNoDigit = -1;

/// The value of a decimal digit of any script that the library knows; kNoDigit for other units.
constexpr int DigitOf(char32_t unit) {
  if (unit < 0x80) return unit >= '0' && unit <= '9' ? static_cast<int>(unit - '0') : kNoDigit;
  // The zero of every run of ten digits.
  constexpr std::array<char32_t, 17> kZeros = {0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66, 0x0AE6,
                                               0x0B66, 0x0C66, 0x0CE6, 0x0D66, 0x0E50, 0x0ED0,
                                               0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10};
  for (const char32_t zero : kZeros) {
    if (unit >= zero && unit < zero + 10) return static_cast<int>(unit - zero);
  }
  return kNoDigit;
}

/// White space before a number: iswspace of that library, which is that of Unicode.
constexpr bool IsSpaceBeforeNumber(char32_t unit) {
  if (unit < 0x80) return unit == ' ' || (unit >= '\t' && unit <= '\r');
  return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) ||
         unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

/// Takes what precedes the digits away: white space, then at most one sign.
/// @return whether the sign is a minus
template <class Unit>
constexpr bool SkipToDigits(std::basic_string_view<Unit>& text) {
  std::size_t spaces = 0;
  while (spaces < text.size() && IsSpaceBeforeNumber(static_cast<char32_t>(text[spaces]))) ++spaces;
  text.remove_prefix(spaces);
  if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
  const bool negative = text.front() == '-';
  text.remove_prefix(1);
  return negative;
}

/// The number that a text of UTF-16 or UTF-32 begins with; 0 if there is none; the nearest bound if
/// it does not fit.
template <class Unit>
requires(sizeof(Unit) > 1) constexpr std::int32_t ParseInt(std::basic_string_view<Unit> text) {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  const bool negative = SkipToDigits(text);
  // Counts downwards, because the negative numbers reach one further than the positive ones.
  std::int32_t value = 0;
  for (const Unit unit : text) {
    const int digit = DigitOf(static_cast<char32_t>(unit));
    if (digit == kNoDigit) break;
    if (value < kMin / 10 || (value == kMin / 10 && digit > -(kMin % 10)))
      return negative ? kMin : kMax;
    value = value * 10 - digit;
  }
  if (negative) return value;
  return value == kMin ? kMax : -value;
}

/// The same of UTF-8.
std::int32_t ParseInt(std::string_view utf8);

/// UTF-8 with 0 to 9 for the digits of all scripts.
std::string WithAsciiDigits(std::string_view utf8);

}  // namespace sab::text
