// Numbers in texts as the C library reads and writes them.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "common/conversions.h"
#include "fuzz/choices.h"

namespace {

using sab::fuzz::Require;
bool IsSame(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Integer>
long long Clamped(long long value) {
  using Limits = std::numeric_limits<Integer>;
  return std::clamp<long long>(value, Limits::min(), Limits::max());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string ascii(reinterpret_cast<const char*>(data), size);
  if (std::any_of(ascii.begin(), ascii.end(), [](char c) { return c < 0; })) return -1;
  const sab::Text text(ascii.begin(), ascii.end());

  const long long integer = std::strtoll(ascii.c_str(), nullptr, 10);
  Require(sab::ParseInt(text) == Clamped<std::int32_t>(integer));
  const double number = std::strtod(ascii.c_str(), nullptr);
  Require(IsSame(sab::ParseDouble(text), number));

  if (!std::isfinite(number)) return 0;
  char expected[512];
  for (const int decimals : {0, 2, 6}) {
    const int length = std::snprintf(expected, sizeof expected, "%.*f", decimals, number);
    Require(sab::FormatFixed(number, decimals) == sab::Text(expected, expected + length));
  }
  return 0;
}
