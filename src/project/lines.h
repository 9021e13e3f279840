#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "xml/reader.h"

namespace sab::project {

/// A part of a text: bytes of UTF-8 from one place up to another.
struct Span {
  std::size_t from = 0;
  std::size_t to = 0;
};

/// Lines and columns of the places of a text. Known for each block of it; what a place needs beyond
/// is counted in its block, so that a text may be one long line.
class Lines {
 public:
  Lines() = default;
  /// @param text UTF-8; lives longer
  explicit Lines(std::string_view text);

  bool IsEmpty() const { return blocks_.empty(); }
  /// As a person counts: characters from 1.
  xml::Place PlaceOf(std::size_t offset) const;

 private:
  static constexpr std::size_t kBlockSize = 512;

  std::string_view text_;
  char line_end_ = '\n';
  std::vector<xml::Place> blocks_;  // where each begins
};

}  // namespace sab::project
