#include "project/lines.h"

#include <algorithm>

namespace sab::project {
namespace {

// Counts in bytes, up to what one holds, so that the compiler compares many at a time.
template <class Wanted>
unsigned CountIf(std::string_view text, const Wanted& is_wanted) {
  constexpr std::size_t kMax = 255;
  unsigned count = 0;
  while (!text.empty()) {
    const std::string_view part = text.substr(0, kMax);
    unsigned char found = 0;
    for (const char c : part) found = static_cast<unsigned char>(found + (is_wanted(c) ? 1 : 0));
    count += found;
    text.remove_prefix(part.size());
  }
  return count;
}

// Where a text ends that begins at a place; lines end with a character.
xml::Place EndOf(std::string_view text, xml::Place place, char line_end) {
  const std::size_t last = text.rfind(line_end);
  if (last != text.npos) {
    place.line += CountIf(text, [line_end](char c) { return c == line_end; });
    place.column = 1;
    text.remove_prefix(last + 1);
  }
  place.column +=
      CountIf(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; });
  return place;
}

// The character that ends lines: CR where no line feed is.
char LineEndOf(std::string_view text) {
  return text.find('\n') == text.npos && text.find('\r') != text.npos ? '\r' : '\n';
}

}  // namespace

Lines::Lines(std::string_view text) : text_(text), line_end_(LineEndOf(text)), blocks_{{1, 1}} {
  blocks_.reserve(text.size() / kBlockSize + 1);
  for (std::size_t end = kBlockSize; end <= text.size(); end += kBlockSize) {
    blocks_.push_back(EndOf(text.substr(end - kBlockSize, kBlockSize), blocks_.back(), line_end_));
  }
}

xml::Place Lines::PlaceOf(std::size_t offset) const {
  offset = std::min(offset, text_.size());
  const std::size_t block = offset / kBlockSize;
  const std::size_t start = block * kBlockSize;
  return EndOf(text_.substr(start, offset - start), blocks_[block], line_end_);
}

}  // namespace sab::project
