#include "xml/plain_text.h"

#include "text/utf.h"
#include "xml/code_page.h"

namespace sab::xml {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

std::string FromUtf16(std::string_view bytes, bool is_big_endian) {
  std::u16string text;
  text.reserve(bytes.size() / 2 + 1);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[is_big_endian ? i + 1 : i]);
    const auto high = static_cast<unsigned char>(bytes[is_big_endian ? i : i + 1]);
    text.push_back(static_cast<char16_t>(high << 8 | low));
  }
  if (bytes.size() % 2 != 0) text.push_back(kReplacement);
  return text::ToUtf8(std::u16string_view(text));  // which replaces unpaired surrogates
}

std::string FromGbk(std::string_view bytes) {
  CodePage gbk("GBK");
  std::string utf8;
  utf8.reserve(bytes.size() + bytes.size() / 2);
  for (;;) {
    bytes.remove_prefix(gbk.Decode(bytes, utf8));
    if (bytes.empty()) return utf8;
    // Windows has the euro sign in its code page 936, though GBK does not.
    text::AppendUtf8(utf8, bytes[0] == '\x80' ? U'\u20AC' : kReplacement);
    bytes.remove_prefix(1);
  }
}

}  // namespace

std::string DecodePlainText(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    bytes.remove_prefix(3);
    if (text::IsUtf8(bytes)) return std::string(bytes);
    return text::ToUtf8(std::u16string_view(text::FromUtf8<char16_t>(bytes)));
  }
  if (bytes.starts_with("\xFF\xFE")) return FromUtf16(bytes.substr(2), false);
  if (bytes.starts_with("\xFE\xFF")) return FromUtf16(bytes.substr(2), true);
  return text::IsUtf8(bytes) ? std::string(bytes) : FromGbk(bytes);
}

}  // namespace sab::xml
