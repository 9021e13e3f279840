#include "check/text_rules.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "check/reporter.h"
#include "text/ascii.h"
#include "text/numbers.h"

namespace sab::check {
namespace {

using formats::Type;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsWhole(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  return !text.empty() && std::ranges::all_of(text, IsDigit);
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::ranges::any_of(
      words, [text](std::string_view word) { return EqualsIgnoringAsciiCase(text, word); });
}

}  // namespace

std::optional<Complaint> AgainstWhole(const formats::Rule& rule, std::string_view text) {
  if (rule.type == Type::kInt32OrMax && text == "INT_MAX") return std::nullopt;
  // Nearly all numbers have few digits.
  constexpr std::int64_t kSmall = 9999;
  const bool is_small = text.size() <= 4 && std::ranges::all_of(text, IsDigit);
  if (is_small && rule.least <= 0 && rule.most > kSmall) return std::nullopt;
  const std::string number = text::WithAsciiDigits(text);
  if (!IsWhole(number)) {
    return Complaint{false, std::string(rule.name) + " is a whole number; of " + Quoted(text) +
                                " the server reads " + std::to_string(text::ParseInt(text))};
  }
  formats::NumberRange range = RangeOf(rule.type);
  range.least = std::max(range.least, rule.least);
  range.most = std::min(range.most, rule.most);
  std::int64_t value = 0;
  const char* const begin = number.data() + (number.starts_with('+') ? 1 : 0);
  const auto [stop, error] = std::from_chars(begin, number.data() + number.size(), value);
  if (error == std::errc() && value >= range.least && value <= range.most) return std::nullopt;
  return Complaint{true, std::string(rule.name) + " is a number from " +
                             std::to_string(range.least) + " to " + std::to_string(range.most) +
                             ", not " + Quoted(text)};
}

std::optional<Complaint> AgainstDecimal(const formats::Rule& rule, std::string_view text) {
  const std::string number = text::WithAsciiDigits(text);
  const std::string_view digits =
      std::string_view(number).substr(number.starts_with('+') && !number.starts_with("+-") ? 1 : 0);
  double value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  const double most = rule.type == Type::kFloat ? double{std::numeric_limits<float>::max()}
                                                : std::numeric_limits<double>::max();
  if (stop == end && (error == std::errc::result_out_of_range ||
                      (error == std::errc() && std::isfinite(value) && std::abs(value) > most))) {
    return Complaint{
        true, std::string(rule.name) + " is too large or too small for its type: " + Quoted(text)};
  }
  if (stop == end && error == std::errc() && std::isfinite(value)) return std::nullopt;
  return Complaint{
      false, std::string(rule.name) + " is a number with a decimal point, not " + Quoted(text)};
}

std::optional<Complaint> AgainstFlag(const formats::Rule& rule, std::string_view text) {
  bool is_right = false;
  std::string_view meaning;
  switch (rule.type) {
    case Type::kOne:
      is_right = IsOneOf(text, {"1", "0", "false"});
      meaning = "1 is true and every other text false";
      break;
    case Type::kNotZero:
      is_right = IsOneOf(text, {"1", "0", "true"});
      meaning = "0 is false and every other text true";
      break;
    case Type::kOneOrTrue:
      is_right = IsOneOf(text, {"1", "0", "true", "false"});
      meaning = "1 and true are true, and every other text is false";
      break;
    case Type::kTrue:
      is_right = IsOneOf(text, {"true", "false", "0"});
      meaning = "true is true and every other text false";
      break;
    case Type::kMinusOne:
      is_right = IsOneOf(text, {"-1", "0"});
      meaning = "-1 is true and every other number false";
      break;
    default:
      is_right = IsOneOf(text, {"-1", "0", "1"});
      meaning = "-1 is true, 0 is false, and any other number is kept as it is";
      break;
  }
  if (is_right) return std::nullopt;
  return Complaint{false, Quoted(text) + " is no truth value of " + std::string(rule.name) + ": " +
                              std::string(meaning)};
}

bool IsGuid(std::string_view text) {
  constexpr std::string_view kForm = "{00000000-0000-0000-0000-000000000000}";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kForm[i] == '0' ? HexDigitValue(text[i]) < 0 : text[i] != kForm[i]) return false;
  }
  return true;
}

}  // namespace sab::check
