#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "lsp/json.h"
#include "xml/reader.h"

namespace sab::lsp {

/// In what a client counts the columns of a line.
enum class PositionEncoding { kUtf8, kUtf16, kUtf32 };

/// A place as the protocol has it: from 0.
struct Position {
  unsigned line = 0;
  unsigned character = 0;
};
struct Range {
  Position start;
  Position end;
};

Json ToJson(Position position);
Json ToJson(const Range& range);
/// What is missing or no number counts as 0.
Position PositionFrom(const Json& value);
Range RangeFrom(const Json& value);

/// Places of a text as bytes and as a client counts them. Lines end with LF, CR LF or CR.
class LineIndex {
 public:
  LineIndex() = default;
  /// @param text UTF-8; lives longer
  explicit LineIndex(std::string_view text);

  /// A place after the end of a line is its end, one after the last line the end of the text.
  std::size_t OffsetOf(Position position, PositionEncoding encoding) const;
  Position PositionOf(std::size_t offset, PositionEncoding encoding) const;
  Range RangeOf(std::size_t from, std::size_t to, PositionEncoding encoding) const {
    return {PositionOf(from, encoding), PositionOf(to, encoding)};
  }
  /// The place that a reader names: lines end with LF, characters are counted, both from 1.
  std::size_t OffsetOf(xml::Place place) const;

  std::string_view Text() const { return text_; }
  std::size_t LineCount() const { return starts_.size(); }
  std::size_t StartOf(std::size_t line) const { return starts_[line]; }
  /// Before what ends the line.
  std::size_t EndOf(std::size_t line) const;

 private:
  std::string_view text_;
  std::vector<std::size_t> starts_;
  std::vector<std::size_t> after_line_feeds_;  // where they differ from the starts
  // Counted up to the start of each block, so that a text may be one long line.
  struct Counts {
    unsigned characters = 0;
    unsigned units = 0;  // of UTF-16
  };
  static constexpr std::size_t kBlockSize = 512;
  std::vector<Counts> blocks_;

  static Counts Plus(Counts counts, std::string_view text);
  Counts CountsAt(std::size_t offset) const;
};

}  // namespace sab::lsp
