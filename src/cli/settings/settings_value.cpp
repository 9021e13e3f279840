#include "cli/settings/settings_value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "cli/display_text.h"
#include "cli/host/automation.h"
#include "common/conversions.h"

namespace sabxml::cli {
namespace {

using sab::Type;

bool IsFlag(Type type) { return type == Type::kFlag || type == Type::kMinusOne; }

// To a host; a flag keeps other numbers than -1 for true.
bool IsTrue(Type type, sab::TextView text) {
  const std::int32_t number = sab::ParseInt(text);
  return type == Type::kMinusOne ? number == -1 : number != 0;
}

std::vector<std::string> PiecesOf(std::string_view list) {
  std::vector<std::string> pieces;
  while (!list.empty()) {
    const std::size_t end = list.find(';');
    pieces.emplace_back(list.substr(0, end));
    list.remove_prefix(end == list.npos ? list.size() : end + 1);
  }
  return pieces;
}

[[noreturn]] void Refuse(std::string_view key, std::string_view text, const std::string& wanted) {
  throw Failure(std::string(key) + "=" + OnOneLine(text) + " is refused: " + wanted +
                ". Nothing was changed.");
}

std::optional<std::int64_t> WholeNumber(std::string_view text, bool may_be_hexadecimal) {
  int base = 10;
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  if (may_be_hexadecimal && (text.starts_with("0x") || text.starts_with("0X"))) {
    text.remove_prefix(2);
    base = 16;
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

// What a host gets whole, as people write it.
sab::formats::NumberRange NumbersOf(Type type) {
  if (type == Type::kUInt32) return {0, std::numeric_limits<std::uint32_t>::max()};
  return sab::formats::RangeOf(type);
}

std::string WordsFor(const sab::formats::NumberRange& range) {
  return std::to_string(range.least) + " to " + std::to_string(range.most);
}

sab::Text CheckedNumber(std::string_view key, Type type, std::string_view text) {
  const bool has_no_sign = type == Type::kUInt32;
  const sab::formats::NumberRange range = NumbersOf(type);
  const auto number = WholeNumber(text, has_no_sign);
  // A number without a sign also as the file has it.
  const std::int64_t least = has_no_sign ? sab::formats::RangeOf(type).least : range.least;
  if (!number || *number < least || *number > range.most)
    Refuse(key, text, "a whole number from " + WordsFor(range) + " is wanted");
  return has_no_sign ? sab::FormatInt(static_cast<std::int32_t>(*number)) : sab::FormatInt(*number);
}

template <class Number>
sab::Text CheckedDecimal(std::string_view key, std::string_view text) {
  std::string_view digits = text;
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
  double number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end ||
      !(std::abs(number) <= double{std::numeric_limits<Number>::max()})) {
    Refuse(key, text,
           std::is_same_v<Number, float> ? "a number of single precision is wanted, 0.25 or -1e6"
                                         : "a number is wanted, 0.25 or -1e6");
  }
  return sab::Format(static_cast<Number>(number));
}

sab::Text CheckedFlag(std::string_view key, std::string_view text) {
  const bool is_true = text == "true" || text == "-1";
  if (!is_true && text != "false" && text != "0") {
    Refuse(key, text, "true or false is wanted, or -1 or 0 as in the file");
  }
  return sab::FormatInt(is_true ? -1 : 0);
}

bool IsTrimmed(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

sab::Text CheckedSettingOf(std::string_view key, Type type, const std::string& text) {
  switch (type) {
    case Type::kText:
      return CheckedText(std::string(key), text);
    case Type::kFlag:
    case Type::kMinusOne:
      return CheckedFlag(key, text);
    case Type::kInt32OrMax:
      if (text == "INT_MAX") return sab::FromUtf8(text);
      break;
    case Type::kFloat:
      return CheckedDecimal<float>(key, text);
    case Type::kDouble:
      return CheckedDecimal<double>(key, text);
    default:
      break;
  }
  return CheckedNumber(key, type, text);
}

template <class Number>
sab::Text WithAllDecimals(sab::TextView saved, sab::TextView loaded) {
  const auto number = static_cast<Number>(sab::ParseDouble(loaded));
  if (static_cast<Number>(sab::ParseDouble(saved)) == number) return sab::Text(saved);
  char digits[64];
  const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
  return sab::FromUtf8(std::string_view(digits, end.ptr));
}

// The digits of a decimal number without leading and trailing zeros, and the power of ten of the
// last one.
struct Decimal {
  bool is_negative = false;
  std::string digits;
  long power = 0;

  bool operator==(const Decimal&) const = default;
};

Decimal DecimalOf(std::string_view text) {
  Decimal decimal;
  const std::size_t end = std::min(text.find_first_of("eE"), text.size());
  if (end < text.size()) decimal.power = std::stol(std::string(text.substr(end + 1)));
  bool is_fraction = false;
  for (const char c : text.substr(0, end)) {
    if (c == '-') decimal.is_negative = true;
    if (c == '.') is_fraction = true;
    if (c < '0' || c > '9') continue;
    if (c != '0' || !decimal.digits.empty()) decimal.digits += c;
    if (is_fraction) --decimal.power;
  }
  for (; decimal.digits.ends_with('0'); ++decimal.power) decimal.digits.pop_back();
  return decimal.digits.empty() ? Decimal() : decimal;
}

}  // namespace

sab::Text LoadedSetting(Type type, sab::TextView saved, sab::TextView loaded) {
  switch (type) {
    case Type::kWideInt16:
      return sab::FormatInt(static_cast<std::int16_t>(sab::ParseInt(saved)));
    case Type::kFloat:
      return WithAllDecimals<float>(saved, loaded);
    case Type::kDouble:
      return WithAllDecimals<double>(saved, loaded);
    default:
      return sab::Text(saved);
  }
}

bool IsSameDecimal(std::string_view a, std::string_view b) { return DecimalOf(a) == DecimalOf(b); }

std::string ShownSetting(Type type, sab::TextView file_text) {
  if (const Type element = sab::formats::ElementOf(type); element == Type::kUInt32) {
    std::string shown;
    for (const std::string& piece : PiecesOf(sab::ToUtf8(file_text)))
      shown += ShownSetting(element, sab::FromUtf8(piece)) + ";";
    return shown;
  }
  if (type == Type::kUInt32)
    return std::to_string(static_cast<std::uint32_t>(sab::ParseInt(file_text)));
  const std::string text = sab::ToUtf8(file_text);
  if (IsFlag(type)) return IsTrue(type, file_text) ? "true" : "false";
  return OnOneLine(text);
}

Json SettingAsJson(Type type, sab::TextView file_text) {
  if (const Type element = sab::formats::ElementOf(type); element != Type::kNone) {
    Json list = Json::array();
    for (const std::string& piece : PiecesOf(sab::ToUtf8(file_text)))
      list.push_back(SettingAsJson(element, sab::FromUtf8(piece)));
    return list;
  }
  switch (type) {
    case Type::kText:
    case Type::kNone:
      return sab::ToUtf8(file_text);
    case Type::kUInt32:
      return static_cast<std::uint32_t>(sab::ParseInt(file_text));
    case Type::kFloat:
    case Type::kDouble:
      return sab::ParseDouble(file_text);
    case Type::kFlag:
    case Type::kMinusOne:
      return IsTrue(type, file_text);
    default:
      return sab::ParseIntOrMax(file_text);
  }
}

std::optional<sab::formats::NumberRange> NumbersOfSetting(const sab::SettingsRow& row) {
  const Type element = sab::ElementOf(row.type);
  const Type type = element == Type::kNone ? row.type : element;
  if (!sab::formats::IsWhole(type)) return std::nullopt;
  return NumbersOf(type);
}

std::string RangeOfSetting(const sab::SettingsRow& row) {
  if (IsFlag(row.type)) return "true or false";
  const auto numbers = NumbersOfSetting(row);
  if (!numbers) return "";
  return WordsFor(*numbers) + (row.type == Type::kInt32OrMax ? " or INT_MAX" : "");
}

sab::Text CheckedText(const std::string& key, const std::string& utf8) {
  if (!utf8.empty() && (IsTrimmed(utf8.front()) || IsTrimmed(utf8.back())))
    Refuse(key, utf8, "a load takes white space off the ends of a text; leave it out");
  sab::Text text = sab::FromUtf8(utf8);
  for (const OLECHAR unit : text) {
    const bool is_control = unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
    if (is_control || unit >= 0xFFFD)
      Refuse(key, utf8, "it has a character that no XML file can hold; leave it out");
  }
  return text;
}

sab::Text CheckedSetting(const sab::SettingsRow& row, const std::string& utf8) {
  if (row.type == Type::kNone) {
    Refuse(
        row.key, utf8,
        "the key is a structure of elements, which can be shown and not set; the host writes it");
  }
  const Type element = sab::formats::ElementOf(row.type);
  if (element == Type::kNone) return CheckedSettingOf(row.key, row.type, utf8);
  sab::Text list;
  for (const std::string& piece : PiecesOf(utf8)) {
    if (piece.empty()) {
      Refuse(row.key, utf8,
             "a list has one semicolon between its elements, and none of them is empty");
    }
    list += CheckedSettingOf(row.key, element, piece);
    list.push_back(sab::kListSeparator);
  }
  return list;
}

}  // namespace sabxml::cli
