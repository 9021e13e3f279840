#include "text/utf.h"

namespace sab::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

template <class Unit>
void AppendUtf16(std::basic_string<Unit>& out, char32_t code) {
  if (code < 0x10000) {
    out.push_back(static_cast<Unit>(code));
  } else {
    out.push_back(static_cast<Unit>(0xD7C0 + (code >> 10)));
    out.push_back(static_cast<Unit>(0xDC00 | (code & 0x3FF)));
  }
}

// What the first byte of a sequence demands of the others (Unicode 15, table 3-7).
struct Lead {
  int trailing;
  unsigned char second_from;
  unsigned char second_to;
};

constexpr Lead LeadOf(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

}  // namespace

void AppendUtf8(std::string& out, char32_t code) {
  const auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | code >> 6);
    byte(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    byte(0xE0 | code >> 12);
    byte(0x80 | (code >> 6 & 0x3F));
    byte(0x80 | (code & 0x3F));
  } else {
    byte(0xF0 | code >> 18);
    byte(0x80 | (code >> 12 & 0x3F));
    byte(0x80 | (code >> 6 & 0x3F));
    byte(0x80 | (code & 0x3F));
  }
}

template <class Unit>
std::string ToUtf8(std::basic_string_view<Unit> text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto unit = static_cast<char32_t>(text[i]);
    const char32_t next = i + 1 < text.size() ? static_cast<char32_t>(text[i + 1]) : 0;
    if (IsHighSurrogate(unit) && IsLowSurrogate(next)) {
      AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++i;
    } else {
      AppendUtf8(out, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
    }
  }
  return out;
}

template <class Unit>
std::basic_string<Unit> FromUtf8(std::string_view utf8) {
  std::basic_string<Unit> out;
  out.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const auto first = static_cast<unsigned char>(utf8[i++]);
    if (first < 0x80) {
      out.push_back(static_cast<Unit>(first));
      continue;
    }
    const Lead lead = LeadOf(first);
    char32_t code = lead.trailing == 1   ? first & 0x1FU
                    : lead.trailing == 2 ? first & 0x0FU
                                         : first & 0x07U;
    int read = 0;
    while (read < lead.trailing && i < utf8.size()) {
      const auto byte = static_cast<unsigned char>(utf8[i]);
      const unsigned from = read == 0 ? lead.second_from : 0x80U;
      const unsigned to = read == 0 ? lead.second_to : 0xBFU;
      if (byte < from || byte > to) break;
      code = code << 6 | (byte & 0x3FU);
      ++read;
      ++i;
    }
    AppendUtf16(out, lead.trailing != 0 && read == lead.trailing ? code : kReplacement);
  }
  return out;
}

std::size_t Utf8CharacterSize(std::string_view utf8) {
  if (utf8.empty()) return 0;
  const auto byte_at = [utf8](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
  if (byte_at(0) < 0x80) return 1;
  const Lead lead = LeadOf(byte_at(0));
  const std::size_t size = static_cast<std::size_t>(lead.trailing) + 1;
  if (size == 1 || utf8.size() < size) return 0;
  if (byte_at(1) < lead.second_from || byte_at(1) > lead.second_to) return 0;
  for (std::size_t i = 2; i < size; ++i) {
    if ((byte_at(i) & 0xC0U) != 0x80) return 0;
  }
  return size;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = Utf8CharacterSize(text);
    if (size == 0) return false;
    text.remove_prefix(size);
  }
  return true;
}

template std::string ToUtf8(std::u16string_view text);
template std::string ToUtf8(std::wstring_view text);
template std::u16string FromUtf8(std::string_view utf8);
template std::wstring FromUtf8(std::string_view utf8);

}  // namespace sab::text
