#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/bstr.h"
#include "common/conversions.h"

namespace sab {

// How the values of settings are read from the text of an element and written as one: an overload
// for each type. Numbers are read by the rules of common/conversions.h and cut to the width of the
// value, as an assignment in C does.

/// A property of 16 bits whose value is held, loaded and saved in 32: what the file says stays what
/// the file says, though the interface hands out only its lower half.
struct WideShort {
  std::int32_t value = 0;
};

inline HRESULT GetField(WideShort field, SHORT* out) noexcept {
  if (!out) return E_POINTER;
  *out = static_cast<SHORT>(field.value);
  return S_OK;
}

inline HRESULT PutField(WideShort& field, SHORT value) noexcept {
  field.value = value;
  return S_OK;
}

template <class Value>
concept WholeNumber = std::integral<Value> || std::is_enum_v<Value>;

inline void ParseSetting(Bstr& value, TextView text) { value.Assign(text); }
inline Text FormatSetting(const Bstr& value) { return Text(value.View()); }

template <WholeNumber Value>
void ParseSetting(Value& value, TextView text) {
  value = static_cast<Value>(ParseInt(text));
}
/// Numbers of 32 bits are written with a sign, whatever their type; flags as the number they hold.
template <WholeNumber Value>
Text FormatSetting(Value value) {
  return FormatInt(static_cast<std::int32_t>(value));
}

inline void ParseSetting(WideShort& value, TextView text) { value.value = ParseInt(text); }
inline Text FormatSetting(WideShort value) { return FormatInt(value.value); }

inline constexpr int kDecimals = 6;

template <std::floating_point Value>
void ParseSetting(Value& value, TextView text) {
  value = static_cast<Value>(ParseDouble(text));
}
template <std::floating_point Value>
Text FormatSetting(Value value) {
  return FormatFixed(static_cast<double>(value), kDecimals);
}

/// A list is written with a semicolon behind each element; an empty piece is none.
inline constexpr OLECHAR kListSeparator = ';';

template <class Element>
void ParseSetting(std::vector<Element>& list, TextView text) {
  std::vector<Element> parsed;
  while (!text.empty()) {
    const std::size_t end = text.find(kListSeparator);
    const TextView piece = text.substr(0, end);
    text.remove_prefix(end == TextView::npos ? text.size() : end + 1);
    if (!piece.empty()) ParseSetting(parsed.emplace_back(), piece);
  }
  list = std::move(parsed);
}
template <class Element>
Text FormatSetting(const std::vector<Element>& list) {
  Text text;
  for (const Element& element : list) {
    text += FormatSetting(element);
    text.push_back(kListSeparator);
  }
  return text;
}

/// What a value is, for those who describe settings or check a text before it is written.
enum class SettingType : unsigned char {
  kText,
  kFlag,           ///< true is -1, false is 0; other numbers are kept as they are
  kStrictFlag,     ///< true exactly for -1
  kShort,          ///< 16 bits
  kUnsignedShort,  ///< 16 bits, without a sign
  kWideShort,      ///< 32 bits in the file, of which the property hands out 16
  kInt,            ///< 32 bits
  kIntOrMax,       ///< 32 bits; "INT_MAX" names the greatest
  kUnsigned,       ///< 32 bits without a sign, written as if there were one: colours, limits
  kFloat,          ///< single precision, six decimals
  kDouble,         ///< double precision, six decimals
  kTextList,       ///< texts, a semicolon behind each
  kIntList,        ///< numbers of 32 bits, a semicolon behind each
  kUnsignedList,
  kStructure,  ///< an element with elements of its own
};

namespace internal {
template <class Value>
constexpr SettingType TypeOfNumber() {
  if constexpr (std::is_enum_v<Value>) {
    return SettingType::kInt;
  } else if constexpr (sizeof(Value) == 2) {
    return std::is_signed_v<Value> ? SettingType::kShort : SettingType::kUnsignedShort;
  } else {
    static_assert(sizeof(Value) == 4);
    return std::is_signed_v<Value> ? SettingType::kInt : SettingType::kUnsigned;
  }
}
}  // namespace internal

template <class Value>
inline constexpr SettingType kSettingTypeOf = internal::TypeOfNumber<Value>();
template <>
inline constexpr SettingType kSettingTypeOf<Bstr> = SettingType::kText;
template <>
inline constexpr SettingType kSettingTypeOf<WideShort> = SettingType::kWideShort;
template <>
inline constexpr SettingType kSettingTypeOf<float> = SettingType::kFloat;
template <>
inline constexpr SettingType kSettingTypeOf<double> = SettingType::kDouble;
template <>
inline constexpr SettingType kSettingTypeOf<std::vector<Bstr>> = SettingType::kTextList;
template <>
inline constexpr SettingType kSettingTypeOf<std::vector<INT>> = SettingType::kIntList;
template <>
inline constexpr SettingType kSettingTypeOf<std::vector<ULONG>> = SettingType::kUnsignedList;

}  // namespace sab
