#include "common/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string>

#include "text/numbers.h"

namespace sab {
namespace {

// The part of a text that can belong to a number, as ASCII; digits of other scripts are mapped.
std::string AsciiNumber(TextView text) {
  std::string ascii;
  for (const OLECHAR unit : text) {
    const int digit = text::DigitOf(static_cast<char32_t>(unit));
    if (digit != text::kNoDigit) {
      ascii.push_back(static_cast<char>('0' + digit));
    } else if (unit < 0x80 && (unit == '.' || unit == '+' || unit == '-' ||
                               (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z'))) {
      ascii.push_back(static_cast<char>(unit));
    } else {
      break;
    }
  }
  return ascii;
}

// Whether a number that does not fit is too large rather than too small: the place of its first
// digit other than 0, counted from the point, together with its exponent.
bool IsTooLarge(std::string_view number, char exponent_mark, int bits_per_digit) {
  const std::size_t mark =
      number.find_first_of(exponent_mark == 'e' ? std::string_view("eE") : std::string_view("pP"));
  const std::string_view mantissa = number.substr(0, mark);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = std::min(mantissa.find_first_not_of("0."), mantissa.size());
  const std::int64_t place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  std::int64_t exponent = 0;
  if (mark != std::string_view::npos) {
    const std::string_view digits = number.substr(mark + 1);
    exponent = ParseInt(Text(digits.begin(), digits.end()));
  }
  return place * bits_per_digit + exponent > 0;
}

// Nothing without a number: a sign alone means nothing either.
std::optional<double> ParseUnsigned(std::string_view number) {
  // After "0x" must come a digit: the conversion below would take a sign or "inf" there, too.
  const bool hexadecimal =
      number.size() > 2 && number[0] == '0' && (number[1] == 'x' || number[1] == 'X') &&
      std::string_view("0123456789abcdefABCDEF.").find(number[2]) != std::string_view::npos;
  if (hexadecimal) {
    number.remove_prefix(2);
    // The conversion below would take two signs in an exponent.
    const std::size_t mark = number.find_first_of("pP");
    if (number.substr(std::min(mark, number.size())).substr(0, 3).ends_with("+-"))
      number = number.substr(0, mark);
  }
  double value = 0;
  const char* const end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(
      number.data(), end, value, hexadecimal ? std::chars_format::hex : std::chars_format::general);
  if (error == std::errc::invalid_argument && !hexadecimal) return std::nullopt;
  if (error != std::errc::result_out_of_range) return value;
  number = number.substr(0, static_cast<std::size_t>(stop - number.data()));
  const bool too_large = hexadecimal ? IsTooLarge(number, 'p', 4) : IsTooLarge(number, 'e', 1);
  return too_large ? std::numeric_limits<double>::infinity() : 0.0;
}

Text Widen(const char* begin, const char* end) { return Text(begin, end); }

}  // namespace

std::int32_t ParseInt(TextView text) { return text::ParseInt(text); }

std::int32_t ParseIntOrMax(TextView text) {
  return EqualsAscii(text, "INT_MAX") ? std::numeric_limits<std::int32_t>::max() : ParseInt(text);
}

double ParseDouble(TextView text) {
  const bool negative = text::SkipToDigits(text);
  // A second sign belongs to no number, though the conversion below would take a minus.
  if (!text.empty() && text.front() == '-') return 0;
  const double value = ParseUnsigned(AsciiNumber(text)).value_or(negative ? -0.0 : 0.0);
  return negative ? -value : value;
}

Text FormatInt(std::int64_t value) {
  std::array<char, 24> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return Widen(buffer.data(), result.ptr);
}

Text FormatFixed(double value, int decimals) {
  // The greatest double has 309 digits before the point.
  std::array<char, 360> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::fixed, decimals);
  return Widen(buffer.data(), result.ptr);
}

}  // namespace sab
