#include "project/lines.h"

#include <algorithm>
#include <cstring>

namespace sab::project {

Lines::Lines(std::string_view text) : text_(text), starts_{0} {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  for (const char* p = begin; p < end;) {
    const void* const found = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
    if (!found) break;
    p = static_cast<const char*>(found) + 1;
    starts_.push_back(static_cast<std::size_t>(p - begin));
  }
}

xml::Place Lines::PlaceOf(std::size_t offset) const {
  offset = std::min(offset, text_.size());
  const auto after = std::upper_bound(starts_.begin(), starts_.end(), offset);
  const std::size_t line = static_cast<std::size_t>(after - starts_.begin());
  const std::string_view before = text_.substr(starts_[line - 1], offset - starts_[line - 1]);
  const auto characters = std::count_if(before.begin(), before.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
  });
  return {static_cast<unsigned>(line), static_cast<unsigned>(characters) + 1};
}

}  // namespace sab::project
