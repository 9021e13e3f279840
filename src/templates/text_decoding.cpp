#include "templates/text_decoding.h"

#include <string_view>

#include "xml/code_page.h"

namespace sab {
namespace {

constexpr OLECHAR kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(OLECHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(OLECHAR unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

Text FromUtf16(std::string_view bytes, bool is_big_endian) {
  Text text;
  text.reserve(bytes.size() / 2 + 1);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[is_big_endian ? i + 1 : i]);
    const auto high = static_cast<unsigned char>(bytes[is_big_endian ? i : i + 1]);
    text.push_back(static_cast<OLECHAR>(high << 8 | low));
  }
  if (bytes.size() % 2 != 0) text.push_back(kReplacement);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      ++i;
    } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
      text[i] = kReplacement;
    }
  }
  return text;
}

Text FromGbk(std::string_view bytes) {
  xml::CodePage gbk("GBK");
  std::string utf8;
  utf8.reserve(bytes.size() + bytes.size() / 2);
  for (;;) {
    bytes.remove_prefix(gbk.Decode(bytes, utf8));
    if (bytes.empty()) return FromUtf8(utf8);
    // Windows has the euro sign in its code page 936, though GBK does not.
    text::AppendUtf8(utf8, bytes[0] == '\x80' ? U'\u20AC' : char32_t{kReplacement});
    bytes.remove_prefix(1);
  }
}

}  // namespace

Text DecodePlainText(const std::string& bytes) {
  const std::string_view all = bytes;
  if (all.starts_with("\xEF\xBB\xBF")) return FromUtf8(all.substr(3));
  if (all.starts_with("\xFF\xFE")) return FromUtf16(all.substr(2), false);
  if (all.starts_with("\xFE\xFF")) return FromUtf16(all.substr(2), true);
  return text::IsUtf8(bytes) ? FromUtf8(all) : FromGbk(all);
}

}  // namespace sab
