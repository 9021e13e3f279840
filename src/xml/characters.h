#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace sab::xml {

// Characters of XML 1.0, fifth edition, over UTF-8.

enum CharacterClass : std::uint8_t {
  kNameStart = 1,    // ASCII name start characters and every byte of a longer sequence
  kNameByte = 2,     // the same for the rest of a name
  kSpace = 4,        // space, tab, CR, LF
  kPlainText = 8,    // ASCII that means nothing special in text: neither <, & nor ]
  kPlainName = 32,   // ASCII that continues a name, except the colon
  kPlainValue = 16,  // ASCII that means nothing special in an attribute's value
};

inline constexpr std::array<std::uint8_t, 256> kClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&classes](unsigned from, unsigned to, unsigned bits) {
    for (unsigned c = from; c <= to; ++c) classes[c] = static_cast<std::uint8_t>(classes[c] | bits);
  };
  add('A', 'Z', kNameStart | kNameByte);
  add('a', 'z', kNameStart | kNameByte);
  add('_', '_', kNameStart | kNameByte);
  add(':', ':', kNameStart | kNameByte);
  add('0', '9', kNameByte);
  add('-', '.', kNameByte);
  for (const auto& [from, to] :
       {std::pair('A', 'Z'), {'a', 'z'}, {'0', '9'}, {'_', '_'}, {'-', '.'}}) {
    add(static_cast<unsigned char>(from), static_cast<unsigned char>(to), kPlainName);
  }
  add(0x80, 0xFF, kNameStart | kNameByte);
  for (const unsigned c : {0x20U, 0x09U, 0x0DU, 0x0AU}) add(c, c, kSpace);
  add(0x20, 0x7F, kPlainText | kPlainValue);
  add('\n', '\n', kPlainText | kPlainValue);
  add('\t', '\t', kPlainText | kPlainValue);
  for (const unsigned c : {0x3CU, 0x26U}) {  // < and &
    classes[c] = static_cast<std::uint8_t>(classes[c] & ~(kPlainText | kPlainValue));
  }
  classes[static_cast<unsigned>(']')] =
      static_cast<std::uint8_t>(classes[static_cast<unsigned>(']')] & ~kPlainText);
  return classes;
}();

inline bool Has(char c, std::uint8_t bits) {
  return (kClasses[static_cast<unsigned char>(c)] & bits) != 0;
}

/// A character of the document and the bytes that it takes; length 0 where there is no valid UTF-8.
struct Decoded {
  char32_t code;
  unsigned length;
};

/// Decodes one character; the text is NUL-terminated, so that looking ahead is safe.
inline Decoded Decode(const char* p) {
  const auto byte = [p](int i) { return static_cast<unsigned char>(p[i]); };
  const auto is_trail = [&byte](int i) { return (byte(i) & 0xC0U) == 0x80; };
  const char32_t first = byte(0);
  if (first < 0x80) return {first, 1};
  if (first >= 0xC2 && first <= 0xDF && is_trail(1)) {
    return {(first & 0x1F) << 6 | (byte(1) & 0x3FU), 2};
  }
  if (first >= 0xE0 && first <= 0xEF && is_trail(1) && is_trail(2)) {
    const char32_t code = (first & 0x0F) << 12 | (byte(1) & 0x3FU) << 6 | (byte(2) & 0x3FU);
    const bool is_valid = code >= 0x800 && (code < 0xD800 || code > 0xDFFF);
    return {code, is_valid ? 3U : 0U};
  }
  if (first >= 0xF0 && first <= 0xF4 && is_trail(1) && is_trail(2) && is_trail(3)) {
    const char32_t code =
        (first & 0x07) << 18 | (byte(1) & 0x3FU) << 12 | (byte(2) & 0x3FU) << 6 | (byte(3) & 0x3FU);
    return {code, code >= 0x10000 && code <= 0x10FFFF ? 4U : 0U};
  }
  return {0, 0};
}

/// Whether three bytes are a character of U+1000 to U+CFFF, Chinese among them, all of which may
/// occur in a document.
inline bool IsCommonOfThreeBytes(const char* p) {
  const auto byte = [p](int i) { return static_cast<unsigned char>(p[i]); };
  const unsigned first = byte(0);
  return first >= 0xE1 && first <= 0xEC && ((byte(1) ^ 0x80U) | (byte(2) ^ 0x80U)) < 0x40;
}

/// Whether the character may occur in a document.
constexpr bool IsCharacter(char32_t code) {
  return code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
         (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

constexpr bool IsNameStart(char32_t c) {
  return (c < 0x80 && (kClasses[c] & kNameStart) != 0) || (c >= 0xC0 && c <= 0xD6) ||
         (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF) || (c >= 0x370 && c <= 0x37D) ||
         (c >= 0x37F && c <= 0x1FFF) || (c >= 0x200C && c <= 0x200D) ||
         (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
         (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) ||
         (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
}

constexpr bool IsNameCharacter(char32_t c) {
  return IsNameStart(c) || (c < 0x80 && (kClasses[c] & kNameByte) != 0) || c == 0xB7 ||
         (c >= 0x300 && c <= 0x36F) || (c >= 0x203F && c <= 0x2040);
}

}  // namespace sab::xml
