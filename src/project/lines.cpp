#include "project/lines.h"

#include <algorithm>

namespace sab::project {
namespace {

// Where a text ends that begins at a place.
xml::Place EndOf(std::string_view text, xml::Place place) {
  const std::size_t last = text.rfind('\n');
  if (last != text.npos) {
    place.line += static_cast<unsigned>(std::ranges::count(text, '\n'));
    place.column = 1;
    text.remove_prefix(last + 1);
  }
  place.column += static_cast<unsigned>(std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
  return place;
}

}  // namespace

Lines::Lines(std::string_view text) : text_(text), blocks_{{1, 1}} {
  blocks_.reserve(text.size() / kBlockSize + 1);
  for (std::size_t end = kBlockSize; end <= text.size(); end += kBlockSize) {
    blocks_.push_back(EndOf(text.substr(end - kBlockSize, kBlockSize), blocks_.back()));
  }
}

xml::Place Lines::PlaceOf(std::size_t offset) const {
  offset = std::min(offset, text_.size());
  const std::size_t block = offset / kBlockSize;
  const std::size_t start = block * kBlockSize;
  return EndOf(text_.substr(start, offset - start), blocks_[block]);
}

}  // namespace sab::project
