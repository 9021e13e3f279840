#pragma once

#include <concepts>
#include <type_traits>
#include <vector>

#include "base/bstr.h"
#include "common/conversions.h"
#include "formats/rule.h"

namespace sab {

using formats::ElementOf;
using formats::IsText;
using formats::IsTruth;
using formats::Type;

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

/// A list in one text has a semicolon after each element.
inline constexpr OLECHAR kListSeparator = ';';

template <class Value>
concept WholeNumber = std::integral<Value> || std::is_enum_v<Value>;

/// Whether an element of a type can be kept in a value of C++.
template <Type kType, class Value>
constexpr bool Fits() {
  constexpr bool kIsWhole32 = WholeNumber<Value> && sizeof(Value) == 4;
  switch (kType) {
    case Type::kInt16:
      return std::is_same_v<Value, SHORT>;
    case Type::kUInt16:
      return std::is_same_v<Value, USHORT>;
    case Type::kWideInt16:
      return std::is_same_v<Value, WideShort>;
    case Type::kInt32:
    case Type::kInt32OrMax:
      return kIsWhole32 && (std::is_signed_v<Value> || std::is_enum_v<Value>);
    case Type::kUInt32:
      return kIsWhole32 && std::is_unsigned_v<Value>;
    case Type::kColour:
      return kIsWhole32;
    case Type::kFloat:
      return std::is_same_v<Value, float>;
    case Type::kDouble:
      return std::is_same_v<Value, double>;
    case Type::kTextList:
      return std::is_same_v<Value, std::vector<Bstr>>;
    case Type::kInt32List:
      return std::is_same_v<Value, std::vector<INT>>;
    case Type::kUInt32List:
      return std::is_same_v<Value, std::vector<ULONG>>;
    default:
      return IsTruth(kType) ? std::is_same_v<Value, VARIANT_BOOL> : IsText(kType);
  }
}

/// The number or truth value that a text means.
template <Type kType>
auto Parsed(TextView text) {
  const auto truth = [](bool is_true) { return is_true ? VARIANT_TRUE : VARIANT_FALSE; };
  if constexpr (kType == Type::kOne) {
    return truth(EqualsAscii(text, "1"));
  } else if constexpr (kType == Type::kNotZero) {
    return truth(!EqualsAscii(text, "0"));
  } else if constexpr (kType == Type::kOneOrTrue) {
    return truth(EqualsAscii(text, "1") || EqualsIgnoringAsciiCase(text, "true"));
  } else if constexpr (kType == Type::kTrue) {
    return truth(EqualsIgnoringAsciiCase(text, "true"));
  } else if constexpr (kType == Type::kMinusOne) {
    return truth(ParseInt(text) == -1);
  } else if constexpr (kType == Type::kNonZero) {
    return truth(ParseInt(text) != 0);
  } else if constexpr (kType == Type::kInt32OrMax) {
    return ParseIntOrMax(text);
  } else if constexpr (kType == Type::kFloat || kType == Type::kDouble) {
    return ParseDouble(text);
  } else {
    return ParseInt(text);  // cut to the width of the value, as an assignment in C does
  }
}

/// Keeps the text of an element in a value.
template <Type kType, class Value>
requires requires(Value& value, TextView text) { value.Assign(text); }
void Store(Value& value, TextView text) { value.Assign(text); }
template <Type kType>
void Store(WideShort& value, TextView text) {
  value.value = Parsed<kType>(text);
}
template <Type kType, class Value>
requires std::is_arithmetic_v<Value> || std::is_enum_v<Value>
void Store(Value& value, TextView text) { value = static_cast<Value>(Parsed<kType>(text)); }
/// A list is replaced by the pieces of the text; an empty piece is none.
template <Type kType, class Element>
void Store(std::vector<Element>& list, TextView text) {
  std::vector<Element> parsed;
  while (!text.empty()) {
    const std::size_t end = text.find(kListSeparator);
    const TextView piece = text.substr(0, end);
    text.remove_prefix(end == TextView::npos ? text.size() : end + 1);
    if (!piece.empty()) Store<ElementOf(kType)>(parsed.emplace_back(), piece);
  }
  list = std::move(parsed);
}

/// The text that stands for a value in a file, whatever its type.
inline Text Format(const Bstr& value) { return Text(value.View()); }
/// Numbers of 32 bits are written with a sign, whatever their type; flags as the number they hold.
template <WholeNumber Value>
Text Format(Value value) {
  return FormatInt(static_cast<std::int32_t>(value));
}
inline Text Format(WideShort value) { return FormatInt(value.value); }
template <std::floating_point Value>
Text Format(Value value) {
  constexpr int kDecimals = 6;
  return FormatFixed(static_cast<double>(value), kDecimals);
}
template <class Element>
Text Format(const std::vector<Element>& list) {
  Text text;
  for (const Element& element : list) {
    text += Format(element);
    text.push_back(kListSeparator);
  }
  return text;
}

}  // namespace sab
