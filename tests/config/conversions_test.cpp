#include "common/conversions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace sab {
namespace {

constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();

// Texts are UTF-8 here; the conversions see them as UTF-16.
TEST(Conversions, IntegersOfEveryWidth) {
  struct Row {
    std::int64_t number;
    std::vector<std::string> texts;
  };
  std::vector<Row> rows = {
      {0, {"", "+-5", "- 5", "-", "abc", "0x10"}},
      {0, {"\u200B5", "\u00B2", "\U0001D7D9"}},  // neither white space nor digits
      {1, {"1", "1e3"}},
      {-1, {"-1", " -1 ", "-1x", "-01", "-\uFF11"}},
      {5, {"+5", "\u00A0\u202F\u3000\u20095"}},
      {7, {"007.9", "7mm"}},
      {-7, {" \t\r\n\v\f-7"}},
      {123, {"\uFF11\uFF12\u0663"}},
      {kInt64Max, {"9223372036854775807", "9223372036854775808"}},
      {kInt64Min, {"-9223372036854775808", "-99999999999999999999999"}},
  };
  for (const std::int64_t edge : {std::int64_t{32768}, std::int64_t{kIntMax},
                                  -std::int64_t{kIntMin}, std::int64_t{1} << 32}) {
    for (const std::int64_t number : {edge - 1, edge, edge + 2, -edge - 1, -edge, 10 - edge})
      rows.push_back({number, {std::to_string(number)}});
  }
  for (const auto& [number, texts] : rows) {
    for (const std::string& utf8 : texts) {
      SCOPED_TRACE(utf8);
      const Text text = FromUtf8(utf8);
      const std::int64_t in_range = std::clamp<std::int64_t>(number, kIntMin, kIntMax);
      EXPECT_EQ(ParseInt(text), in_range);
    }
  }
}

TEST(Conversions, NamedMaximumIsComparedWhole) {
  EXPECT_EQ(ParseIntOrMax(OLESTR("INT_MAX")), kIntMax);
  EXPECT_EQ(ParseIntOrMax(OLESTR("30")), 30);
  for (const OLECHAR* text :
       {OLESTR("int_max"), OLESTR(" INT_MAX"), OLESTR("INT_MAX1"), OLESTR("INT")})
    EXPECT_EQ(ParseIntOrMax(text), 0);
}

TEST(Conversions, FloatingPointNumbers) {
  const std::string zeros(400, '0');
  const struct {
    double number;
    std::vector<std::string> texts;
  } rows[] = {
      {0, {"", "x1", ".", "--1", "+-1", "in"}},
      {0, {"1e-400", "0e99999999999", "1" + zeros + "e-801"}},
      {0, {"0x", "0xg", "0x-1", "0xinf", "0x1p-9999"}},
      {1, {"1,5", "1e", "1e+", "1d5", "1" + zeros + "e-400"}},
      {1.5, {"\u3000\uFF11.\uFF15"}},
      {2.5, {" 2.5mm"}},
      {-0.5, {"-.5"}},
      {-344, {"-0x158p+-9"}},
      {5, {"+5."}},
      {7, {zeros + "7"}},
      {1000, {"1e3"}},
      {0.01, {"1E-2z"}},
      {0.1, {"0.1"}},
      {8, {"0x1p3"}},
      {0.5, {"0X.8"}},
      {std::numeric_limits<double>::denorm_min(), {"4.9406564584124654e-324"}},
      {std::numeric_limits<double>::max(), {"1.7976931348623157e308"}},
      {std::numeric_limits<double>::infinity(), {"1e400", "1e99999999999", "infinity"}},
      {std::numeric_limits<double>::infinity(), {"0x1p9999", "0." + zeros + "1e801"}},
      {-std::numeric_limits<double>::infinity(), {"-1e400", "-INF"}},
  };
  for (const auto& [number, texts] : rows) {
    for (const std::string& text : texts) EXPECT_EQ(ParseDouble(FromUtf8(text)), number) << text;
  }
  EXPECT_TRUE(std::isnan(ParseDouble(OLESTR("nan"))));
  EXPECT_FALSE(std::signbit(ParseDouble(OLESTR("-x"))));
  EXPECT_TRUE(std::signbit(ParseDouble(OLESTR("-0"))));
}

TEST(Conversions, IllFormedUtf8IsReplaced) {
  EXPECT_EQ(ToUtf8(FromUtf8("a\xED\xA0\x80\xFFz\xE4\xB8")), "a\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD");
}

TEST(Conversions, ValuesBecomeTexts) {
  EXPECT_EQ(ToUtf8(FormatInt(0)), "0");
  EXPECT_EQ(ToUtf8(FormatInt(kInt64Min)), "-9223372036854775808");

  const struct {
    double value;
    int decimals;
    const char* text;
  } rows[] = {
      {0, 2, "0.00"},
      {-0.0, 2, "-0.00"},
      {1.005, 2, "1.00"},  // the nearest double lies below
      {0.125, 2, "0.12"},  // a tie goes to the even digit
      {0.375, 2, "0.38"},
      {-2.675, 1, "-2.7"},
      {9.999, 2, "10.00"},
      {12345.6789, 0, "12346"},
      {1e21, 1, "1000000000000000000000.0"},
      {std::numeric_limits<double>::infinity(), 2, "inf"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(ToUtf8(FormatFixed(row.value, row.decimals)), row.text) << row.text;
  EXPECT_EQ(FormatFixed(std::numeric_limits<double>::lowest(), 40).size(), 1U + 309 + 1 + 40);
}

}  // namespace
}  // namespace sab
