#include "xml/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "text/ascii.h"
#include "text/utf.h"
#include "xml/characters.h"
#include "xml/error.h"

namespace sab::xml {
namespace {

template <class Unit>
void AppendCode(char32_t code, std::basic_string<Unit>& out) {
  if (code < 0x10000) {
    out.push_back(static_cast<Unit>(code));
  } else {
    out.push_back(static_cast<Unit>(0xD7C0 + (code >> 10)));
    out.push_back(static_cast<Unit>(0xDC00 | (code & 0x3FF)));
  }
}

constexpr std::ptrdiff_t kStep = 16;

// Writes valid UTF-8 as UTF-16 and gives its end, after which up to fifteen units are overwritten.
template <class Unit>
Unit* WriteUtf16(std::string_view utf8, Unit* to) {
  const char* p = utf8.data();
  const char* const end = p + utf8.size();
  while (p < end) {
    std::array<unsigned char, kStep> bytes;
    std::memcpy(bytes.data(), p, kStep);
    const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(bytes);
    if (((words[0] | words[1]) & 0x8080808080808080) == 0) {
      std::copy(bytes.begin(), bytes.end(), to);
      const std::ptrdiff_t count = std::min(end - p, kStep);
      p += count;
      to += count;
      continue;
    }
    do {
      const auto first = static_cast<unsigned char>(*p);
      const auto trail = [p](int i) { return static_cast<unsigned char>(p[i]) & 0x3FU; };
      if (first < 0x80) {
        *to++ = first;
        ++p;
      } else if (first < 0xE0) {
        *to++ = static_cast<Unit>((first & 0x1FU) << 6 | trail(1));
        p += 2;
      } else if (first < 0xF0) {
        *to++ = static_cast<Unit>((first & 0x0FU) << 12 | trail(1) << 6 | trail(2));
        p += 3;
      } else {
        const std::uint32_t code =
            (first & 0x07U) << 18 | trail(1) << 12 | trail(2) << 6 | trail(3);
        *to++ = static_cast<Unit>(0xD7C0 + (code >> 10));
        *to++ = static_cast<Unit>(0xDC00 | (code & 0x3FF));
        p += 4;
      }
    } while (p < end && static_cast<unsigned char>(*p) >= 0x80);
  }
  return to;
}

// The character that a checked reference means; moves past it.
char32_t TakeReference(const char*& p) {
  const std::string_view name(p + 1, static_cast<std::size_t>(std::strchr(p, ';') - p - 1));
  p += name.size() + 2;
  if (name[0] != '#') {
    return name == "lt"     ? '<'
           : name == "gt"   ? '>'
           : name == "amp"  ? '&'
           : name == "quot" ? '"'
                            : '\'';
  }
  const bool is_hexadecimal = name[1] == 'x';
  char32_t code = 0;
  for (const char c : name.substr(is_hexadecimal ? 2 : 1)) {
    code = code * (is_hexadecimal ? 16 : 10) + static_cast<char32_t>(HexDigitValue(c));
  }
  return code;
}

void AppendCode(char32_t code, std::string& out) { text::AppendUtf8(out, code); }

}  // namespace

template <class Unit>
Utf16Text<Unit>::Utf16Text(std::string_view utf8) {
  Unit* units = short_.data();
  if (utf8.size() > kShort) {
    long_.resize(utf8.size() + kOverwritten);  // never more units than bytes
    units = long_.data();
  }
  data_ = units;
  size_ = static_cast<std::size_t>(WriteUtf16(utf8, units) - units);
}

template <class Unit>
void AppendUtf16(std::string_view utf8, std::basic_string<Unit>& out) {
  const Utf16Text<Unit> text(utf8);
  out.append(text.Data(), text.Size());
}

template <class Unit>
void AppendDecoded(std::string_view text, bool in_attribute, std::basic_string<Unit>& out) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p < end) {
    const char* const start = p;
    const auto is_special = [in_attribute](char c) {
      return c == '&' || c == '\r' || (in_attribute && (c == '\n' || c == '\t'));
    };
    while (p < end && !is_special(*p)) ++p;
    AppendPlain({start, static_cast<std::size_t>(p - start)}, out);
    if (p == end) return;
    if (*p == '&') {
      AppendCode(TakeReference(p), out);
      continue;
    }
    p += *p == '\r' && p + 1 < end && p[1] == '\n' ? 2 : 1;
    out.push_back(in_attribute ? ' ' : '\n');
  }
}

template void AppendUtf16(std::string_view utf8, std::u16string& out);
template void AppendUtf16(std::string_view utf8, std::wstring& out);
template void AppendDecoded(std::string_view text, bool in_attribute, std::u16string& out);
template void AppendDecoded(std::string_view text, bool in_attribute, std::wstring& out);
template void AppendDecoded(std::string_view text, bool in_attribute, std::string& out);
template class Utf16Text<char16_t>;
template class Utf16Text<wchar_t>;

bool NeedsDecoding(std::string_view text, bool in_attribute) {
  return text.find_first_of(in_attribute ? "&\r\n\t" : "&\r") != text.npos;
}

void AppendEscaped(std::u16string_view text, std::string& out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (code < 0x80 && Has(static_cast<char>(code), kPlainText) && code != '>') {
      out.push_back(static_cast<char>(code));
      continue;
    }
    if (code >= 0xD800 && code <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00U);
    }
    if (!IsCharacter(code)) {
      throw Error("the text has a character (number " +
                  std::to_string(static_cast<unsigned>(code)) + ") that XML cannot hold");
    }
    switch (code) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '\r':
        out += "&#13;";
        break;
      default:
        text::AppendUtf8(out, code);
    }
  }
}

}  // namespace sab::xml
