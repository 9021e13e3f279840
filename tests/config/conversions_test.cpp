#include "common/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sab {
namespace {

constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();

// Texts are UTF-8 here; the conversions see them as UTF-16.
TEST(Conversions, IntegersOfEveryWidth) {
  const struct {
    const char* text;
    std::int64_t wide;
    std::int32_t number;
    std::int16_t narrow;
  } rows[] = {
      {"", 0, 0, 0},
      {"42", 42, 42, 42},
      {" \t\r\n\v\f-7mm", -7, -7, -7},
      {"+5", 5, 5, 5},
      {"+-5", 0, 0, 0},
      {"- 5", 0, 0, 0},
      {"-", 0, 0, 0},
      {"abc", 0, 0, 0},
      {"0x10", 0, 0, 0},
      {"007.9", 7, 7, 7},
      {"1e3", 1, 1, 1},
      {"32768", 32768, 32768, -32768},
      {"-32769", -32769, -32769, 32767},
      {"65535", 65535, 65535, -1},
      {"2147483647", 2147483647, kIntMax, -1},
      {"2147483648", 2147483648, kIntMax, -1},
      {"2147483650", 2147483650, kIntMax, -1},
      {"-2147483648", -2147483648LL, kIntMin, 0},
      {"-2147483649", -2147483649LL, kIntMin, 0},
      {"9223372036854775807", kInt64Max, kIntMax, -1},
      {"9223372036854775808", kInt64Max, kIntMax, -1},
      {"-9223372036854775808", kInt64Min, kIntMin, 0},
      {"-99999999999999999999999", kInt64Min, kIntMin, 0},
      {"\u00A0\u3000\u20095", 5, 5, 5},       // white space that is not ASCII
      {"\u200B5", 0, 0, 0},                   // a zero-width space is none
      {"\uFF11\uFF12\u0663", 123, 123, 123},  // fullwidth and Arabic digits
      {"\u00B2", 0, 0, 0},                    // a superscript is no decimal digit
      {"\U0001D7D9", 0, 0, 0},                // nor is anything beyond the first plane
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const Text text = FromUtf8(row.text);
    EXPECT_EQ(ParseInt64(text), row.wide);
    EXPECT_EQ(ParseInt(text), row.number);
    EXPECT_EQ(ParseShort(text), row.narrow);
    EXPECT_EQ(ParseBool(text), row.number == -1 ? VARIANT_TRUE : VARIANT_FALSE);
  }
}

TEST(Conversions, OnlyMinusOneIsTrue) {
  for (const char* text : {"-1", " -1 ", "-1x", "-01", "-\uFF11"})
    EXPECT_EQ(ParseBool(FromUtf8(text)), VARIANT_TRUE) << text;
  for (const char* text : {"1", "true", "TRUE", "", "0", "-10", "65535", "4294967295"})
    EXPECT_EQ(ParseBool(FromUtf8(text)), VARIANT_FALSE) << text;
}

TEST(Conversions, NamedMaximumIsComparedWhole) {
  EXPECT_EQ(ParseIntOrMax(OLESTR("INT_MAX")), kIntMax);
  EXPECT_EQ(ParseIntOrMax(OLESTR("30")), 30);
  for (const OLECHAR* text :
       {OLESTR("int_max"), OLESTR(" INT_MAX"), OLESTR("INT_MAX1"), OLESTR("INT")})
    EXPECT_EQ(ParseIntOrMax(text), 0);
}

TEST(Conversions, FloatingPointNumbers) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    const char* text;
    double number;
  } rows[] = {
      {"", 0},
      {"x1", 0},
      {" 2.5mm", 2.5},
      {"-.5", -0.5},
      {"+5.", 5},
      {".", 0},
      {"--1", 0},
      {"+-1", 0},
      {"1,5", 1},
      {"1e3", 1000},
      {"1E-2z", 0.01},
      {"1e", 1},
      {"1e+", 1},
      {"1d5", 1},
      {"0.1", 0.1},
      {"1e400", kInfinity},
      {"-1e400", -kInfinity},
      {"1e99999999999", kInfinity},
      {"1e-400", 0},
      {"0e99999999999", 0},
      {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
      {"1.7976931348623157e308", std::numeric_limits<double>::max()},
      {"0x1p3", 8},
      {"0X.8", 0.5},
      {"0x", 0},
      {"0xg", 0},
      {"0x-1", 0},
      {"0x1p9999", kInfinity},
      {"0x1p-9999", 0},
      {"infinity", kInfinity},
      {"-INF", -kInfinity},
      {"0xinf", 0},
      {"in", 0},
      {"\u3000\uFF11.\uFF15", 1.5},
  };
  for (const auto& row : rows) EXPECT_EQ(ParseDouble(FromUtf8(row.text)), row.number) << row.text;
  EXPECT_TRUE(std::isnan(ParseDouble(OLESTR("nan"))));
  EXPECT_TRUE(std::signbit(ParseDouble(OLESTR("-0"))));

  // A number far from its point, and one with more digits than any buffer.
  const std::string zeros(400, '0');
  EXPECT_EQ(ParseDouble(FromUtf8("0." + zeros + "1e801")), kInfinity);
  EXPECT_EQ(ParseDouble(FromUtf8("1" + zeros + "e-801")), 0);
  EXPECT_EQ(ParseDouble(FromUtf8("1" + zeros + "e-400")), 1);
  EXPECT_EQ(ParseDouble(FromUtf8(zeros + "7")), 7);
}

TEST(Conversions, ValuesBecomeTexts) {
  EXPECT_EQ(ToUtf8(FormatInt(0)), "0");
  EXPECT_EQ(ToUtf8(FormatInt(kInt64Min)), "-9223372036854775808");
  EXPECT_EQ(ToUtf8(FormatBool(VARIANT_TRUE)), "-1");
  for (const int value : {0, 1, 2, -2, 32767})
    EXPECT_EQ(ToUtf8(FormatBool(static_cast<VARIANT_BOOL>(value))), "0") << value;

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
  EXPECT_EQ(ToUtf8(FormatPoint(1.5, -2)), "1.500000,-2.000000");
}

}  // namespace
}  // namespace sab
