#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sab::text {

/// UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD, so the result is always valid UTF-8.
/// @tparam Unit char16_t, or wchar_t where it has 16 bits
template <class Unit>
std::string ToUtf8(std::basic_string_view<Unit> text);

/// UTF-8 to UTF-16. Bytes that are not UTF-8 become U+FFFD, one for each maximal ill-formed part.
template <class Unit>
std::basic_string<Unit> FromUtf8(std::string_view utf8);

/// Appends one character, which is no surrogate.
void AppendUtf8(std::string& out, char32_t code);

/// Size in bytes of the character at the beginning of a text; 0 for an empty text and for bytes
/// that are not UTF-8.
std::size_t Utf8CharacterSize(std::string_view utf8);

/// Whether a text is UTF-8 from end to end, so that it comes back unchanged from UTF-16.
bool IsUtf8(std::string_view text);

}  // namespace sab::text
