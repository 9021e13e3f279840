#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "xml/reader.h"

namespace sab::project {

/// A part of a text: bytes of UTF-8 from one place up to another.
struct Span {
  std::size_t from = 0;
  std::size_t to = 0;
};

/// Lines and columns of the places of a text, found by searching a list of the lines.
class Lines {
 public:
  Lines() = default;
  /// @param text UTF-8; lives longer
  explicit Lines(std::string_view text);

  bool IsEmpty() const { return starts_.empty(); }
  /// As a person counts: characters from 1.
  xml::Place PlaceOf(std::size_t offset) const;
  /// The place of a line that begins with 0.
  std::size_t StartOf(std::size_t line) const { return starts_[line]; }
  std::size_t Count() const { return starts_.size(); }

 private:
  std::string_view text_;
  std::vector<std::size_t> starts_;
};

}  // namespace sab::project
