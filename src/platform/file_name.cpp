#include "platform/file_name.h"

#include <string_view>

namespace sab {
namespace {

bool StartsWithAsciiIgnoringCase(TextView text, std::string_view ascii) {
  return EqualsIgnoringAsciiCase(text.substr(0, ascii.size()), ascii);
}

std::string DecodePercent(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? HexDigitValue(text[i + 1]) : -1;
    const int low = high >= 0 ? HexDigitValue(text[i + 2]) : -1;
    if (low >= 0) {
      decoded.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      decoded.push_back(text[i]);
    }
  }
  return decoded;
}

}  // namespace

const char* ReasonAgainstName(TextView name) {
  if (name.empty()) return "no file is named";
  if (name.find(OLECHAR{0}) != TextView::npos) return "the name holds a zero character";
  for (const std::string_view scheme : {"http://", "https://", "ftp://"}) {
    if (StartsWithAsciiIgnoringCase(name, scheme))
      return "network addresses are not opened; give the path of a file";
  }
  return nullptr;
}

std::optional<std::string> PathOfFileAddress(TextView name) {
  constexpr std::string_view kScheme = "file:";
  constexpr std::string_view kLocalHost = "//localhost/";
  if (!StartsWithAsciiIgnoringCase(name, kScheme)) return std::nullopt;
  name.remove_prefix(kScheme.size());
  if (name.empty() || name.front() != '/') return std::nullopt;
  if (StartsWithAsciiIgnoringCase(name, kLocalHost)) {
    name.remove_prefix(kLocalHost.size() - 1);
  } else if (StartsWithAsciiIgnoringCase(name, "///")) {
    name.remove_prefix(2);
  }
  return DecodePercent(ToUtf8(name));
}

}  // namespace sab
