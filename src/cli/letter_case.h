#pragma once

#include <algorithm>
#include <string_view>

namespace sabxml::cli {

/// Whether two names are the same but for the letter case of A to Z.
inline bool EqualNames(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&lower](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace sabxml::cli
