#include "common/conversions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

namespace sab {
namespace {

constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();

// Edges, and random texts of what numbers are written with.
TEST(Conversions, NumbersAreReadAndWrittenAsByTheCLibrary) {
  const std::string zeros(400, '0');
  std::vector<std::string> texts = {zeros + "7", "1" + zeros + "e-801", "1" + zeros + "e-400",
                                    "0." + zeros + "1e801"};
  std::istringstream edges(
      "+-5|- 5| \t\r\n\v\f-7mm|0x10|-0|1d5|1,5|0X.8|-0x158p+-9|0x1p-9999|0x1p9999|1e-400|"
      "1e99999999999|0e99999999999|4.9406564584124654e-324|1.7976931348623157e308|infinity|-INF|"
      "nan|99999999999999999999|1.005|0.125|0.375|-2.675|9.999|1e21");
  for (std::string edge; std::getline(edges, edge, '|');) texts.push_back(edge);
  for (const long long edge : {32768LL, 2147483648LL, 4294967296LL})
    for (const long long number : {edge - 1, edge, edge + 1, -edge - 1, -edge, 1 - edge})
      texts.push_back(std::to_string(number));
  std::mt19937 random(20240611);
  constexpr std::string_view kPieces = "00112233456789+-..eExp \tif";
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto length = random() % 12; length > 0; --length)
      text += kPieces[random() % kPieces.size()];
    texts.push_back(text);
  }
  for (const std::string& text : texts) {
    SCOPED_TRACE(text);
    const long long whole = std::strtoll(text.c_str(), nullptr, 10);
    EXPECT_EQ(ParseInt(FromUtf8(text)), std::clamp<long long>(whole, kIntMin, kIntMax));
    char* end = nullptr;
    double expected = std::strtod(text.c_str(), &end);
    if (end == text.c_str()) expected = 0;  // the library of MinGW keeps the sign of no number
    const double number = ParseDouble(FromUtf8(text));
    EXPECT_EQ(std::isnan(number), std::isnan(expected));
    if (std::isnan(number)) continue;
    EXPECT_EQ(std::memcmp(&number, &expected, sizeof number), 0) << number;  // with its sign
    for (const int decimals : {0, 1, 2, 6, 40}) {
      char written[400];
      std::snprintf(written, sizeof written, "%.*f", decimals, expected);
      EXPECT_EQ(ToUtf8(FormatFixed(expected, decimals)), written);
    }
  }
  EXPECT_EQ(ToUtf8(FormatInt(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
}

TEST(Conversions, WhiteSpaceAndDigitsMayBeOfAnyScript) {
  // The last three are neither white space nor digits.
  const std::pair<const char*, double> rows[] = {{"-\uFF11", -1},
                                                 {"\u00A0\u202F\u3000\u20095", 5},
                                                 {"\uFF11\uFF12\u0663", 123},
                                                 {"\u3000\uFF11.\uFF15", 1.5},
                                                 {"\u200B5", 0},
                                                 {"\u00B2", 0},
                                                 {"\U0001D7D9", 0}};
  for (const auto& [text, number] : rows) {
    EXPECT_EQ(ParseInt(FromUtf8(text)), static_cast<std::int32_t>(number)) << text;
    EXPECT_EQ(ParseDouble(FromUtf8(text)), number) << text;
  }
}

TEST(Conversions, NamedMaximumIsComparedWhole) {
  EXPECT_EQ(ParseIntOrMax(OLESTR("INT_MAX")), kIntMax);
  for (const OLECHAR* text : {OLESTR("int_max"), OLESTR(" INT_MAX"), OLESTR("INT_MAX1")})
    EXPECT_EQ(ParseIntOrMax(text), 0);
}

TEST(Conversions, IllFormedUtf8IsReplaced) {
  EXPECT_EQ(ToUtf8(FromUtf8("a\xED\xA0\x80\xFFz\xE4\xB8")), "a\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD");
}

}  // namespace
}  // namespace sab
