#include "xml/code_page.h"

#include <fcntl.h>
#include <iconv.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <system_error>

#include "text/utf.h"
#include "xml/characters.h"
#include "xml/error.h"

namespace sab::xml {

namespace {

const auto kNone = reinterpret_cast<iconv_t>(-1);

[[noreturn]] void RaiseSystemError(int error, std::string_view name) {
  if (error == ENOMEM) throw std::bad_alloc();
  throw std::system_error(error, std::generic_category(),
                          "the conversion of " + std::string(name) + " cannot be loaded");
}

// Whether the system can load the conversions that it keeps in files.
bool LoadsConversions() {
  const iconv_t latin = iconv_open("UTF-8", "ISO-8859-1");
  if (latin == kNone) return false;
  iconv_close(latin);
  return true;
}

// The system says that it does not know a conversion also where it cannot load it. Without
// descriptors at its first use it knows none for as long as the process lives.
[[noreturn]] void RaiseUnknown(std::string_view name) {
  const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (file < 0) RaiseSystemError(errno, name);
  close(file);
  if (!LoadsConversions()) RaiseSystemError(ELIBACC, name);
  throw Error("the encoding " + std::string(name) + " is not known");
}

iconv_t Open(const std::string& to, const std::string& from, std::string_view name) {
  iconv_t opened = iconv_open(to.c_str(), from.c_str());
  // A temporary lack of memory is reported as EINVAL, too, so it is tried again.
  if (opened == kNone) opened = iconv_open(to.c_str(), from.c_str());
  if (opened != kNone) return opened;
  if (errno != EINVAL) RaiseSystemError(errno, name);
  RaiseUnknown(name);
}

// Files that say GB2312 use its extension, as editors for it have always written.
std::string SystemName(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  if (upper == "GB2312" || upper == "GB_2312-80" || upper == "GBK") return "CP936";
  if (upper == "BIG5") return "CP950";
  if (upper == "EUC-KR") return "CP949";
  if (upper == "SHIFT_JIS" || upper == "SHIFT-JIS") return "CP932";
  if (upper.starts_with("WINDOWS-")) return "CP" + upper.substr(8);
  return upper;
}

class Converter {
 public:
  Converter(const std::string& to, const std::string& from, std::string_view name)
      : descriptor_(Open(to, from, name)) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { iconv_close(descriptor_); }

  void Reset() { iconv(descriptor_, nullptr, nullptr, nullptr, nullptr); }
  std::size_t Convert(char*& in, std::size_t& in_left, char*& out, std::size_t& out_left) {
    return iconv(descriptor_, &in, &in_left, &out, &out_left);
  }

 private:
  iconv_t descriptor_;
};

}  // namespace

struct CodePage::State {
  explicit State(std::string_view name)
      : decoder("UTF-8", SystemName(name), name), encoder(SystemName(name), "UTF-8", name) {}

  Converter decoder;
  Converter encoder;
};

CodePage::CodePage(std::string_view name) : state_(new State(name)) {}

CodePage::~CodePage() { delete state_; }

std::size_t CodePage::Decode(std::string_view bytes, std::string& utf8, std::size_t most) {
  state_->decoder.Reset();
  char* in = const_cast<char*>(bytes.data());  // iconv does not write there
  std::size_t in_left = bytes.size();
  std::array<char, 16384> buffer;
  while (in_left > 0 && utf8.size() < most) {
    char* out = buffer.data();
    const std::size_t room = std::min(buffer.size(), most - utf8.size());
    std::size_t out_left = room;
    const std::size_t result = state_->decoder.Convert(in, in_left, out, out_left);
    utf8.append(buffer.data(), room - out_left);
    if (result == static_cast<std::size_t>(-1) && errno != E2BIG) break;
    if (room == out_left && in_left > 0) break;
  }
  return bytes.size() - in_left;
}

bool CodePage::Encode(char32_t code, std::string& bytes) {
  state_->encoder.Reset();
  std::string character;
  text::AppendUtf8(character, code);
  char* in = character.data();
  std::size_t in_left = character.size();
  std::array<char, 16> buffer;
  char* out = buffer.data();
  std::size_t out_left = buffer.size();
  if (state_->encoder.Convert(in, in_left, out, out_left) != 0 || in_left > 0) return false;
  bytes.append(buffer.data(), buffer.size() - out_left);
  return true;
}

}  // namespace sab::xml
