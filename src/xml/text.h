#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace sab::xml {

/// Valid UTF-8 as UTF-16, on the stack where it is short.
/// @tparam Unit char16_t, or wchar_t where it has 16 bits
template <class Unit>
class Utf16Text {
 public:
  /// @param utf8 part of a document's text: up to fifteen bytes after it are looked at
  explicit Utf16Text(std::string_view utf8);
  Utf16Text(const Utf16Text&) = delete;
  Utf16Text& operator=(const Utf16Text&) = delete;

  const Unit* Data() const { return data_; }
  std::size_t Size() const { return size_; }

 private:
  static constexpr std::size_t kShort = 64;
  static constexpr std::size_t kOverwritten = 16;

  std::array<Unit, kShort + kOverwritten> short_;
  std::basic_string<Unit> long_;
  const Unit* data_;
  std::size_t size_;
};

/// Appends valid UTF-8 as UTF-16.
/// @param utf8 part of a document's text: up to fifteen bytes after it are looked at
/// @tparam Unit char16_t, or wchar_t where it has 16 bits
template <class Unit>
void AppendUtf16(std::string_view utf8, std::basic_string<Unit>& out);

/// Appends valid UTF-8 in the units of the string: char for UTF-8, else those of UTF-16.
template <class Unit>
void AppendPlain(std::string_view utf8, std::basic_string<Unit>& out) {
  if constexpr (sizeof(Unit) == 1) {
    out += utf8;
  } else {
    AppendUtf16(utf8, out);
  }
}

/// The same for text of a document: references are replaced by their characters, line ends become
/// LF.
/// @param in_attribute white space becomes spaces, as it does in attributes' values
template <class Unit>
void AppendDecoded(std::string_view text, bool in_attribute, std::basic_string<Unit>& out);

/// Whether decoding changes anything.
bool NeedsDecoding(std::string_view text, bool in_attribute);

/// Appends a text as a document holds it, as UTF-8. Raises Error for what XML cannot hold.
void AppendEscaped(std::u16string_view text, std::string& out);

inline bool IsTrimmed(char32_t c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace sab::xml
