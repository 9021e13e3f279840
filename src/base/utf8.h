#pragma once

#include <cstddef>
#include <string_view>

namespace sab {

/// Bytes of the character that a text begins with; 0 where it begins with none or not with UTF-8.
std::size_t Utf8CharacterSize(std::string_view utf8);

/// Whether a text is UTF-8 from end to end, so that it comes back unchanged from UTF-16.
bool IsUtf8(std::string_view text);

}  // namespace sab
