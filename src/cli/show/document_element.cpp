#include "cli/show/document_element.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "cli/host/automation.h"
#include "cli/standard_input.h"

namespace sabxml::cli {
namespace {

// What precedes a document element is a declaration and comments; no file has more of them.
constexpr std::size_t kProlog = std::size_t{1} << 20;

std::string StartOf(const std::string& file) {
  const std::string readable = PathToRead(file);
  const std::filesystem::path path(std::u8string(readable.begin(), readable.end()));
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw Failure(file + ": this is a folder");
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw Failure(file + ": " + std::strerror(errno));
  std::string bytes(kProlog, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

// The ASCII characters of a text of UTF-16, others as '?'.
std::string FromUtf16(const std::string& bytes, bool is_big_endian) {
  std::string ascii;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const char low = bytes[is_big_endian ? i + 1 : i];
    const char high = bytes[is_big_endian ? i : i + 1];
    ascii += high == '\0' && static_cast<unsigned char>(low) < 0x80 ? low : '?';
  }
  return ascii;
}

// Markup is ASCII in every other encoding that the server reads: no character of GB2312, GBK,
// GB18030 or Big5 has a second byte that looks like markup.
std::string MarkupOf(const std::string& bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with(std::string("<\0", 2))) {
    return FromUtf16(bytes, false);
  }
  if (bytes.starts_with("\xFE\xFF") || bytes.starts_with(std::string("\0<", 2))) {
    return FromUtf16(bytes, true);
  }
  return bytes;
}

// The end of a comment, instruction or declaration that starts here.
std::size_t EndOfProlog(const std::string& text, std::size_t at) {
  const char* const end = text.compare(at, 4, "<!--") == 0 ? "-->"
                          : text[at + 1] == '?'            ? "?>"
                                                           : ">";
  const std::size_t found = text.find(end, at + 2);
  return found == std::string::npos ? found : found + std::strlen(end);
}

}  // namespace

std::string DocumentElementOf(const std::string& file) {
  const std::string text = MarkupOf(StartOf(file));
  std::size_t at = text.find('<');
  while (at != std::string::npos && at + 1 < text.size() &&
         (text[at + 1] == '?' || text[at + 1] == '!')) {
    at = EndOfProlog(text, at);
    if (at != std::string::npos) at = text.find('<', at);
  }
  if (at == std::string::npos) return {};
  const std::size_t end = text.find_first_of(" \t\r\n/>", at);
  const std::string name = text.substr(at + 1, end == std::string::npos ? end : end - at - 1);
  return name.substr(name.find(':') + 1);  // npos + 1 is 0
}

bool IsPlainText(const std::string& file) {
  const std::string bytes = StartOf(file);
  std::string text = MarkupOf(bytes);
  // What became of a byte-order mark.
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) text.erase(0, 1);
  if (bytes.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string::npos && text[first] != '<';
}

}  // namespace sabxml::cli
