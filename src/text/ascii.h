#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace sab {

// Letters and digits of ASCII, for units of any width. Whatever is not ASCII stays as it is.

template <class Unit>
constexpr Unit ToLowerAscii(Unit unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<Unit>(unit + ('a' - 'A')) : unit;
}

/// A text with a to z for A to Z.
inline std::string LowerAsciiOf(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = ToLowerAscii(c);
  return lower;
}

/// Whether two texts are the same when the letters A to Z count as a to z. Their units may differ
/// in width.
template <class First, class Second>
constexpr bool EqualsIgnoringAsciiCase(const First& first, const Second& second) {
  const auto folded = [](auto unit) {
    return char32_t{std::make_unsigned_t<decltype(unit)>(ToLowerAscii(unit))};
  };
  return std::ranges::equal(first, second, {}, folded, folded);
}
/// The same for a literal, which ends before its NUL.
template <class First, std::size_t kSize>
constexpr bool EqualsIgnoringAsciiCase(const First& first, const char (&literal)[kSize]) {
  return EqualsIgnoringAsciiCase(first, std::string_view(literal));
}

/// The value of a hexadecimal digit, or -1.
template <class Unit>
constexpr int HexDigitValue(Unit unit) {
  if (unit >= '0' && unit <= '9') return static_cast<int>(unit - '0');
  const Unit lower = ToLowerAscii(unit);
  return lower >= 'a' && lower <= 'f' ? static_cast<int>(lower - 'a') + 10 : -1;
}

}  // namespace sab
