#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace sab {

/// A text as a template argument: the name of an element, or a path of names.
template <std::size_t kSize>
struct Name {
  char text[kSize] = {};

  constexpr Name() = default;
  constexpr Name(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }

  constexpr std::string_view View() const { return {text, kSize - 1}; }
};

/// The path of the document element itself.
inline constexpr Name<1> kNoPath;

/// "a/b" of "a" and "b"; the name alone of none and a name.
template <std::size_t kPathSize, std::size_t kNameSize>
constexpr auto Join(const Name<kPathSize>& path, const Name<kNameSize>& name) {
  if constexpr (kPathSize == 1) {
    return name;
  } else {
    Name<kPathSize + kNameSize> joined;
    std::copy_n(path.text, kPathSize, joined.text);
    joined.text[kPathSize - 1] = '/';
    std::copy_n(name.text, kNameSize, joined.text + kPathSize);
    return joined;
  }
}

}  // namespace sab
