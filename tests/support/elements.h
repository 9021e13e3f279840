#pragma once

#include <string>

namespace sab::testing {

/// Elements inside of each other, "A/B", around a content.
inline std::string Nested(const std::string& path, const std::string& content) {
  const std::size_t slash = path.find('/');
  const std::string name = path.substr(0, slash);
  const std::string inside =
      slash == std::string::npos ? content : Nested(path.substr(slash + 1), content);
  return "<" + name + ">" + inside + "</" + name + ">";
}

}  // namespace sab::testing
