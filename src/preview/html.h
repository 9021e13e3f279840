#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace sab::preview {

/// Appends a text so that it is nothing but text in HTML, between tags as well as in a quoted
/// attribute. Control characters, which HTML does not allow, become U+FFFD.
void AppendEscaped(std::string& out, std::string_view text);

/// Writes HTML into one string. A literal of the program is markup; everything else that is a text
/// is escaped, so what comes from a file cannot become markup by an oversight.
class Html {
 public:
  template <std::size_t kSize>
  Html& operator<<(const char (&markup)[kSize]) {
    out_.append(markup, kSize - 1);
    return *this;
  }
  Html& operator<<(std::string_view text) {
    AppendEscaped(out_, text);
    return *this;
  }
  template <std::integral Number>
  requires(!std::same_as<Number, char> && !std::same_as<Number, bool>) Html& operator<<(
      Number number) {
    char digits[24];
    out_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    return *this;
  }
  /// Appends what is markup already: the style sheet, or what another Html has written.
  Html& Markup(std::string_view markup) {
    out_.append(markup);
    return *this;
  }

  void Reserve(std::size_t size) { out_.reserve(size); }
  std::size_t Size() const { return out_.size(); }
  std::string Take() { return std::move(out_); }

 private:
  std::string out_;
};

}  // namespace sab::preview
