#include "lsp/uri.h"

#include "project/path_finder.h"
#include "text/ascii.h"
#include "text/utf.h"

namespace sab::lsp {
namespace {

bool IsLetter(char c) { return ToLowerAscii(c) >= 'a' && ToLowerAscii(c) <= 'z'; }

bool HasDrive(std::string_view path) {
  return path.size() > 1 && IsLetter(path[0]) && path[1] == ':' &&
         (path.size() == 2 || path[2] == '/');
}

}  // namespace

std::string PathOfUri(std::string_view uri) {
  constexpr std::string_view kScheme = "file:";
  if (!EqualsIgnoringAsciiCase(uri.substr(0, kScheme.size()), kScheme)) return {};
  uri.remove_prefix(kScheme.size());
  uri = uri.substr(0, uri.find_first_of("?#"));
  std::string host;
  if (uri.starts_with("//")) {
    const std::size_t end = std::min(uri.find('/', 2), uri.size());
    host = uri.substr(2, end - 2);
    uri.remove_prefix(end);
  }
  std::string path;
  for (std::size_t i = 0; i < uri.size(); ++i) {
    const int high = i + 2 < uri.size() && uri[i] == '%' ? HexDigitValue(uri[i + 1]) : -1;
    const int low = high < 0 ? -1 : HexDigitValue(uri[i + 2]);
    if (low < 0) {
      path += uri[i];
    } else {
      path += static_cast<char>(high * 16 + low);
      i += 2;
    }
  }
  if (path.find('\0') != path.npos || !text::IsUtf8(path)) return {};
  if (!host.empty() && !EqualsIgnoringAsciiCase(host, "localhost")) return "//" + host + path;
  if (path.starts_with('/') && HasDrive(std::string_view(path).substr(1))) {
    path.erase(0, 1);
    if (path[0] >= 'a') path[0] = static_cast<char>(path[0] - 'a' + 'A');
  }
  return project::TextOf(project::PathOf(path).lexically_normal());
}

std::string UriOfPath(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const bool is_share = path.starts_with("//");
  std::string uri = is_share ? "file:" : HasDrive(path) ? "file:///" : "file://";
  for (const char c : path) {
    const bool is_plain = IsLetter(c) || (c >= '0' && c <= '9') ||
                          std::string_view("/-._~").find(c) != std::string_view::npos;
    if (is_plain) {
      uri += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      uri += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return uri;
}

}  // namespace sab::lsp
