#include "xml/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "xml/characters.h"
#include "xml/error.h"

namespace sab::xml {

struct CodePage::State {
  iconv_t decoder;
  iconv_t encoder;
};

namespace {

// Files that say GB2312 use its extension, as editors for it have always written.
std::string SystemName(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  if (upper == "GB2312" || upper == "GB_2312-80" || upper == "GBK") return "CP936";
  if (upper == "BIG5") return "CP950";
  if (upper == "SHIFT_JIS" || upper == "SHIFT-JIS") return "CP932";
  if (upper.starts_with("WINDOWS-")) return "CP" + upper.substr(8);
  return upper;
}

}  // namespace

CodePage::CodePage(std::string_view name) : state_(new State) {
  const std::string system_name = SystemName(name);
  state_->decoder = iconv_open("UTF-8", system_name.c_str());
  state_->encoder = iconv_open(system_name.c_str(), "UTF-8");
  const auto none = reinterpret_cast<iconv_t>(-1);
  if (state_->decoder == none || state_->encoder == none) {
    if (state_->decoder != none) iconv_close(state_->decoder);
    if (state_->encoder != none) iconv_close(state_->encoder);
    delete state_;
    throw Error("the encoding " + std::string(name) + " is not known");
  }
}

CodePage::~CodePage() {
  iconv_close(state_->decoder);
  iconv_close(state_->encoder);
  delete state_;
}

std::size_t CodePage::Decode(std::string_view bytes, std::string& utf8, std::size_t most) {
  iconv(state_->decoder, nullptr, nullptr, nullptr, nullptr);
  char* in = const_cast<char*>(bytes.data());  // iconv does not write there
  std::size_t in_left = bytes.size();
  std::array<char, 16384> buffer;
  while (in_left > 0 && utf8.size() < most) {
    char* out = buffer.data();
    const std::size_t room = std::min(buffer.size(), most - utf8.size());
    std::size_t out_left = room;
    const std::size_t result = iconv(state_->decoder, &in, &in_left, &out, &out_left);
    utf8.append(buffer.data(), room - out_left);
    if (result == static_cast<std::size_t>(-1) && errno != E2BIG) break;
    if (room == out_left && in_left > 0) break;
  }
  return bytes.size() - in_left;
}

bool CodePage::Encode(char32_t code, std::string& bytes) {
  iconv(state_->encoder, nullptr, nullptr, nullptr, nullptr);
  std::string character;
  AppendUtf8(character, code);
  char* in = character.data();
  std::size_t in_left = character.size();
  std::array<char, 16> buffer;
  char* out = buffer.data();
  std::size_t out_left = buffer.size();
  if (iconv(state_->encoder, &in, &in_left, &out, &out_left) != 0 || in_left > 0) return false;
  bytes.append(buffer.data(), buffer.size() - out_left);
  return true;
}

}  // namespace sab::xml
