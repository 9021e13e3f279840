#include "cli/display_text.h"

#include <algorithm>
#include <cstdio>

#include "text/utf.h"

namespace sabxml::cli {

std::string OnOneLine(std::string_view utf8) {
  std::string line;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const std::size_t size = sab::text::Utf8CharacterSize(utf8.substr(i));
    // U+0080 to U+009F command some terminals, too.
    const bool is_upper_control =
        byte == 0xC2 && size == 2 && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
    if (byte == '\n') {
      line += "\\n";
    } else if (byte == '\r') {
      line += "\\r";
    } else if (byte == '\t') {
      line += "\\t";
    } else if (byte < 0x20 || byte == 0x7F || is_upper_control || size == 0) {
      char code[8];
      const unsigned shown = is_upper_control ? static_cast<unsigned char>(utf8[++i]) : byte;
      std::snprintf(code, sizeof code, "\\x%02x", shown);
      line += code;
    } else {
      line += utf8.substr(i, size);
      i += size - 1;
    }
  }
  return line;
}

std::string AsMessage(std::string_view utf8) {
  std::string message;
  for (std::size_t at = 0; at <= utf8.size();) {
    const std::size_t end = std::min(utf8.find('\n', at), utf8.size());
    if (at > 0) message += "\n  ";
    message += OnOneLine(utf8.substr(at, end - at));
    at = end + 1;
  }
  return message;
}

std::size_t WidthOf(std::string_view utf8) {
  std::size_t width = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    // From U+3000 on nearly all that these files contain is wide.
    if ((byte & 0xC0U) != 0x80) width += byte >= 0xE3 ? 2 : 1;
  }
  return width;
}

std::string Padded(std::string_view utf8, std::size_t width) {
  const std::size_t own = WidthOf(utf8);
  return std::string(utf8) + std::string(width > own ? width - own : 0, ' ');
}

}  // namespace sabxml::cli
