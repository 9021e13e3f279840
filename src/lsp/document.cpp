#include <algorithm>

#include "lsp/workspace.h"
#include "text/ascii.h"
#include "text/utf.h"
#include "xml/encoding.h"
#include "xml/error.h"

namespace sab::lsp {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

// Whether a declaration says that the bytes are UTF-16.
bool IsDeclaredUtf16(std::string_view text) {
  if (!text.starts_with("<?xml")) return false;
  const std::string_view declaration = text.substr(0, std::min(text.find('>'), text.size()));
  const std::size_t at = declaration.find("encoding");
  if (at == declaration.npos) return false;
  constexpr std::string_view kName = "UTF-16";
  const std::size_t name = declaration.find_first_of("\"'", at);
  return name != declaration.npos &&
         EqualsIgnoringAsciiCase(declaration.substr(name + 1, kName.size()), kName);
}

std::string AsUtf16(std::string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text::FromUtf8<char16_t>(text)) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

}  // namespace

const LineIndex& Document::Lines() const {
  if (!lines_) lines_.emplace(text_);
  return *lines_;
}

void Document::Change(const Json& change, PositionEncoding encoding) {
  const Json& text = Member(change, {"text"});
  if (!text.is_string()) return;
  const Json& range = Member(change, {"range"});
  if (!range.is_object()) {
    text_ = text.get<std::string>();
  } else {
    const Range places = RangeFrom(range);
    const std::size_t from = Lines().OffsetOf(places.start, encoding);
    const std::size_t to = std::max(from, Lines().OffsetOf(places.end, encoding));
    text_.replace(from, to - from, text.get_ref<const std::string&>());
  }
  lines_.reset();
}

std::size_t Document::MarkSize() const { return text_.starts_with(kMark) ? kMark.size() : 0; }

// A client has characters, whatever the bytes of the file are. A mark keeps a declaration of
// another encoding from being applied to them.
std::string Document::Bytes() const {
  if (MarkSize() > 0) return text_;
  if (IsDeclaredUtf16(text_)) return AsUtf16(text_);
  try {
    if (xml::Encoding(text_).IsUtf8()) return text_;
  } catch (const xml::Error&) {
    return text_;
  }
  return std::string(kMark) + text_;
}

}  // namespace sab::lsp
