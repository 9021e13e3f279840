#pragma once

#include <string>
#include <string_view>

namespace sab::xml {

/// Appends valid UTF-8 as UTF-16.
/// @param utf8 part of a document's text: up to fifteen bytes after it are looked at
void AppendUtf16(std::string_view utf8, std::u16string& out);

/// The same for text of a document: references are replaced by their characters, line ends become
/// LF.
/// @param in_attribute white space becomes spaces, as it does in attributes' values
void AppendDecoded(std::string_view text, bool in_attribute, std::u16string& out);
void AppendDecoded(std::string_view text, bool in_attribute, std::string& out);

/// Whether decoding changes anything.
bool NeedsDecoding(std::string_view text, bool in_attribute);

/// Appends a text as a document holds it, as UTF-8. Raises Error for what XML cannot hold.
void AppendEscaped(std::u16string_view text, std::string& out);

inline bool IsTrimmed(char32_t c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace sab::xml
