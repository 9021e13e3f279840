#pragma once

#include <cstdint>

#include "base/text.h"

namespace sab {

// How texts of a configuration file become values and values become texts. The rules are those of
// the wide-character conversions of Microsoft's C library (_wtoi, wcstod), written out
// here so that both platforms give the same answer whatever the locale is: white space of any
// script is skipped before the number, decimal digits of any script that library knows (fullwidth
// ones among them) count as digits, and whatever follows the number is ignored.

/// The number a text begins with; 0 if there is none; the nearest bound if it does not fit.
std::int32_t ParseInt(TextView text);

/// As ParseInt, except that exactly "INT_MAX" gives the greatest number.
std::int32_t ParseIntOrMax(TextView text);

/// The number a text begins with, in decimal or hexadecimal ("0x1p3") form, "inf" or "nan"; 0 if
/// there is none, an infinity if it is too large.
double ParseDouble(TextView text);

/// Decimal digits with a sign for negative numbers.
Text FormatInt(std::int64_t value);

/// As printf's "%.<decimals>f" in the C locale: exactly rounded, never an exponent.
/// @param decimals digits after the point, 0 to 40
Text FormatFixed(double value, int decimals);

}  // namespace sab
