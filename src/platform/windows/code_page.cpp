#include "xml/code_page.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "text/utf.h"
#include "xml/characters.h"
#include "xml/error.h"

namespace sab::xml {

struct CodePage::State {
  UINT number;
};

namespace {

// The names that drafting files carry; the system knows its code pages by number.
UINT NumberOf(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  static constexpr struct {
    std::string_view name;
    UINT number;
  } kKnown[] = {{"GB2312", 936},    {"GB_2312-80", 936}, {"GBK", 936},       {"CP936", 936},
                {"GB18030", 54936}, {"BIG5", 950},       {"SHIFT_JIS", 932}, {"SHIFT-JIS", 932},
                {"EUC-KR", 949},    {"US-ASCII", 20127}, {"ASCII", 20127},   {"KOI8-R", 20866},
                {"EUC-JP", 51932}};
  for (const auto& known : kKnown) {
    if (upper == known.name) return known.number;
  }
  const auto number_after = [&upper](std::string_view prefix) -> UINT {
    if (!upper.starts_with(prefix) || upper.size() == prefix.size()) return 0;
    UINT number = 0;
    for (const char c : std::string_view(upper).substr(prefix.size())) {
      if (c < '0' || c > '9' || number > 100000) return 0;
      number = number * 10 + static_cast<UINT>(c - '0');
    }
    return number;
  };
  if (const UINT number = number_after("WINDOWS-")) return number;
  if (const UINT part = number_after("ISO-8859-")) return 28590 + part;
  return 0;
}

// Bytes of the character that starts here.
std::size_t LengthAt(UINT number, std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  if (number == 54936 && first >= 0x81 && bytes.size() > 1) {
    return bytes[1] >= '0' && bytes[1] <= '9' ? 4 : 2;
  }
  return IsDBCSLeadByteEx(number, first) ? 2 : 1;
}

}  // namespace

CodePage::CodePage(std::string_view name) : state_(new State{NumberOf(name)}) {
  if (state_->number == 0 || !IsValidCodePage(state_->number)) {
    delete state_;
    throw Error("the encoding " + std::string(name) + " is not known");
  }
}

CodePage::~CodePage() { delete state_; }

std::size_t CodePage::Decode(std::string_view bytes, std::string& utf8, std::size_t most) {
  std::size_t read = 0;
  while (read < bytes.size() && utf8.size() < most) {
    if (static_cast<unsigned char>(bytes[read]) < 0x80) {
      utf8.push_back(bytes[read++]);
      continue;
    }
    const std::size_t length = LengthAt(state_->number, bytes.substr(read));
    if (read + length > bytes.size()) break;
    std::array<wchar_t, 4> wide;
    const int units =
        MultiByteToWideChar(state_->number, MB_ERR_INVALID_CHARS, bytes.data() + read,
                            static_cast<int>(length), wide.data(), static_cast<int>(wide.size()));
    if (units <= 0) break;
    char32_t code = static_cast<char16_t>(wide[0]);
    if (units == 2 && code >= 0xD800 && code <= 0xDBFF) {
      code = 0x10000 + ((code - 0xD800) << 10) + (static_cast<char16_t>(wide[1]) - 0xDC00U);
    }
    text::AppendUtf8(utf8, code);
    read += length;
  }
  return read;
}

bool CodePage::Encode(char32_t code, std::string& bytes) {
  std::array<wchar_t, 2> wide{static_cast<wchar_t>(code), 0};
  int units = 1;
  if (code >= 0x10000) {
    wide = {static_cast<wchar_t>(0xD7C0 + (code >> 10)),
            static_cast<wchar_t>(0xDC00 | (code & 0x3FF))};
    units = 2;
  }
  // GB18030 has every character and takes no flags.
  const bool is_complete = state_->number == 54936;
  BOOL replaced = FALSE;
  std::array<char, 16> buffer;
  const int length = WideCharToMultiByte(
      state_->number, is_complete ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(), units, buffer.data(),
      static_cast<int>(buffer.size()), nullptr, is_complete ? nullptr : &replaced);
  if (length <= 0 || replaced) return false;
  bytes.append(buffer.data(), static_cast<std::size_t>(length));
  return true;
}

}  // namespace sab::xml
