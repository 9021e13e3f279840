#include "lsp/positions.h"

#include <algorithm>

#include "text/utf.h"

namespace sab::lsp {
namespace {

// What a character counts for, by its size in bytes.
unsigned WidthOf(std::size_t bytes, PositionEncoding encoding) {
  switch (encoding) {
    case PositionEncoding::kUtf8:
      return static_cast<unsigned>(bytes);
    case PositionEncoding::kUtf16:
      return bytes == 4 ? 2 : 1;
    default:
      return 1;
  }
}

// Whether a byte is one of a character after its first.
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

std::size_t SizeAt(std::string_view text, std::size_t at) {
  if (static_cast<unsigned char>(text[at]) < 0x80) return 1;
  return std::max<std::size_t>(text::Utf8CharacterSize(text.substr(at)), 1);
}

}  // namespace

Json ToJson(Position position) {
  return {{"line", position.line}, {"character", position.character}};
}

Json ToJson(const Range& range) {
  return {{"start", ToJson(range.start)}, {"end", ToJson(range.end)}};
}

Position PositionFrom(const Json& value) {
  return {Number(Member(value, {"line"})), Number(Member(value, {"character"}))};
}

Range RangeFrom(const Json& value) {
  return {PositionFrom(Member(value, {"start"})), PositionFrom(Member(value, {"end"}))};
}

LineIndex::LineIndex(std::string_view text) : text_(text), starts_{0} {
  blocks_.reserve(text.size() / kBlockSize + 1);
  blocks_.emplace_back();
  for (std::size_t end = kBlockSize; end <= text.size(); end += kBlockSize) {
    blocks_.push_back(Plus(blocks_.back(), text.substr(end - kBlockSize, kBlockSize)));
  }
  bool has_lone_return = false;
  for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != text.npos;) {
    const bool is_pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    has_lone_return = has_lone_return || (text[at] == '\r' && !is_pair);
    at += is_pair ? 2 : 1;
    starts_.push_back(at);
  }
  if (!has_lone_return) return;
  after_line_feeds_.push_back(0);
  for (std::size_t at = 0; (at = text.find('\n', at)) != text.npos;) {
    after_line_feeds_.push_back(++at);
  }
}

LineIndex::Counts LineIndex::Plus(Counts counts, std::string_view text) {
  for (const char c : text) {
    const unsigned is_first = IsContinuation(c) ? 0 : 1;
    counts.characters += is_first;
    counts.units += is_first + (static_cast<unsigned char>(c) >= 0xF0 ? 1U : 0U);
  }
  return counts;
}

LineIndex::Counts LineIndex::CountsAt(std::size_t offset) const {
  const std::size_t block = offset / kBlockSize;
  const std::size_t start = block * kBlockSize;
  return Plus(blocks_[block], text_.substr(start, offset - start));
}

std::size_t LineIndex::EndOf(std::size_t line) const {
  std::size_t end = line + 1 < starts_.size() ? starts_[line + 1] : text_.size();
  if (line + 1 == starts_.size()) return end;
  if (end > starts_[line] && text_[end - 1] == '\n') --end;
  if (end > starts_[line] && text_[end - 1] == '\r') --end;
  return end;
}

std::size_t LineIndex::OffsetOf(Position position, PositionEncoding encoding) const {
  if (position.line >= starts_.size()) return text_.size();
  const std::size_t end = EndOf(position.line);
  std::size_t at = starts_[position.line];
  if (encoding == PositionEncoding::kUtf8) {
    at = std::min(at + position.character, end);
    // Not inside of a character.
    while (at > starts_[position.line] && at < text_.size() && IsContinuation(text_[at])) {
      --at;
    }
    return at;
  }
  for (unsigned left = position.character; left > 0 && at < end;) {
    const std::size_t size = SizeAt(text_, at);
    const unsigned width = WidthOf(size, encoding);
    if (width > left) break;
    left -= width;
    at += size;
  }
  return at;
}

Position LineIndex::PositionOf(std::size_t offset, PositionEncoding encoding) const {
  offset = std::min(offset, text_.size());
  const auto after = std::ranges::upper_bound(starts_, offset);
  const auto line = static_cast<std::size_t>(after - starts_.begin()) - 1;
  const std::size_t start = starts_[line];
  const std::size_t character = encoding == PositionEncoding::kUtf8
                                    ? offset - start
                                    : CountsAt(offset).units - CountsAt(start).units;
  return {static_cast<unsigned>(line), static_cast<unsigned>(character)};
}

std::size_t LineIndex::OffsetOf(xml::Place place) const {
  const std::vector<std::size_t>& lines = after_line_feeds_.empty() ? starts_ : after_line_feeds_;
  if (place.line == 0) return 0;
  if (place.line > lines.size()) return text_.size();
  std::size_t at = lines[place.line - 1];
  const std::size_t end = place.line < lines.size() ? lines[place.line] - 1 : text_.size();
  // The last block of the line that begins before the place.
  unsigned count = CountsAt(at).characters;
  const unsigned wanted = count + std::max(place.column, 1U) - 1;
  const auto first = blocks_.begin() + static_cast<std::ptrdiff_t>(at / kBlockSize);
  const auto last = blocks_.begin() + static_cast<std::ptrdiff_t>(end / kBlockSize) + 1;
  const auto after = std::upper_bound(
      first + 1, last, wanted,
      [](unsigned characters, const Counts& block) { return characters < block.characters; });
  if (const auto block = after - 1; block != first) {
    at = static_cast<std::size_t>(block - blocks_.begin()) * kBlockSize;
    count = block->characters;
  }
  for (; at < end; ++at) {
    if (IsContinuation(text_[at])) continue;
    if (count == wanted) break;
    ++count;
  }
  return at;
}

}  // namespace sab::lsp
