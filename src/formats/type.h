#pragma once

#include <cstdint>
#include <limits>

namespace sab::formats {

/// What the text of an element is and which value it becomes.
enum class Type : unsigned char {
  kNone,  ///< no text: it has elements, or is a mark

  // Kept as texts.
  kText,
  kGuid,   ///< identifier of a class or an interface, in braces
  kPath,   ///< of a file or a folder
  kUrl,    ///< address on the web
  kImage,  ///< file name of a picture
  kKey,    ///< name of a key on the keyboard

  // Truth values, each in the manner of its files.
  kOne,        ///< true for "1" alone
  kNotZero,    ///< false for "0" alone
  kOneOrTrue,  ///< true for "1", and for "true" in any letter case
  kTrue,       ///< true for "true" in any letter case
  kFlag,       ///< -1 is true and 0 is false; any other number is kept as it is
  kMinusOne,   ///< true for the number -1 alone
  kNonZero,    ///< true for every number but 0

  // Numbers; a text that begins with none is 0.
  kInt16,
  kUInt16,
  kWideInt16,  ///< 32 bits, all of which are kept; the property hands out 16
  kInt32,
  kInt32OrMax,  ///< 32 bits; "INT_MAX" is the greatest
  kUInt32,      ///< 32 bits, written as if there were a sign
  kColour,      ///< the same 32 bits; what they mean is the host's
  kFloat,
  kDouble,

  // Lists: a semicolon after each element.
  kTextList,
  kInt32List,
  kUInt32List,
};

/// Texts that are kept as they are.
constexpr bool IsText(Type type) { return type >= Type::kText && type <= Type::kKey; }
constexpr bool IsTruth(Type type) { return type >= Type::kOne && type <= Type::kNonZero; }
constexpr bool IsWhole(Type type) { return type >= Type::kInt16 && type <= Type::kColour; }
constexpr bool IsDecimal(Type type) { return type == Type::kFloat || type == Type::kDouble; }

/// What a file holds, without what it means to people.
constexpr Type Basic(Type type) {
  if (IsText(type)) return Type::kText;
  if (type == Type::kColour) return Type::kUInt32;
  return type == Type::kNonZero ? Type::kFlag : type;
}

/// The type of a list's elements; kNone for what is no list.
constexpr Type ElementOf(Type type) {
  return type == Type::kTextList     ? Type::kText
         : type == Type::kInt32List  ? Type::kInt32
         : type == Type::kUInt32List ? Type::kUInt32
                                     : Type::kNone;
}

/// The least and the greatest of a type's whole numbers.
struct NumberRange {
  std::int64_t least;
  std::int64_t most;
};

/// What a file may say so that it is read whole. Values without a sign are written as if there were
/// one.
constexpr NumberRange RangeOf(Type type) {
  switch (type) {
    case Type::kInt16:
    case Type::kWideInt16:
      return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
    case Type::kUInt16:
      return {0, std::numeric_limits<std::uint16_t>::max()};
    default:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
  }
}

}  // namespace sab::formats
