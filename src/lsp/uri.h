#pragma once

#include <string>
#include <string_view>

namespace sab::lsp {

/// The path of a file: URI with slashes, "C:/a b.xml" for file:///c%3A/a%20b.xml; empty for what
/// has another scheme.
std::string PathOfUri(std::string_view uri);

/// The file: URI of an absolute path.
std::string UriOfPath(std::string_view path);

}  // namespace sab::lsp
