#include "templates/text_template.h"

#include <algorithm>
#include <utility>

#include "platform/text_comparison.h"

namespace sab {
namespace {

// The last one is the space of Chinese text.
constexpr OLECHAR kBlanks[] = OLESTR(" \t\u3000");

TextView Trimmed(TextView text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == text.npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

// The name in a marker; empty for a line that is none.
TextView NameInMarker(TextView line) {
  if (!line.starts_with(OLESTR('['))) return {};
  const std::size_t end = line.find_first_of(OLESTR("[]"), 1);
  if (end == line.npos || line[end] != OLESTR(']')) return {};
  if (!Trimmed(line.substr(end + 1)).empty()) return {};
  return Trimmed(line.substr(1, end - 1));
}

}  // namespace

TextTemplate::TextTemplate(Text text) : text_(std::move(text)) {
  sections_.push_back({{0, 0}, 0, 0});
  const TextView all = text_;
  for (std::size_t at = 0; at < all.size();) {
    const std::size_t end = std::min(all.find_first_of(OLESTR("\r\n"), at), all.size());
    AddLine({at, end - at});
    at = end + (all.substr(end).starts_with(OLESTR("\r\n")) ? 2 : 1);
  }
  if (HasOnlyBlankLines()) sections_.erase(sections_.begin());
}

void TextTemplate::AddLine(Span line) {
  const TextView text = ViewOf(line);
  const TextView name = NameInMarker(text);
  if (!name.empty()) {
    const auto start = static_cast<std::size_t>(name.data() - text_.data());
    sections_.push_back({{start, name.size()}, lines_.size(), 0});
    return;
  }
  if (text.starts_with(OLESTR("[["))) line = {line.start + 1, line.length - 1};
  lines_.push_back(line);
  ++sections_.back().line_count;
}

// Of the first section, which has no name.
bool TextTemplate::HasOnlyBlankLines() const {
  const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(sections_.front().line_count);
  return std::all_of(lines_.begin(), end,
                     [this](Span line) { return Trimmed(ViewOf(line)).empty(); });
}

std::optional<std::size_t> TextTemplate::Find(TextView name) const {
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    if (name.empty() ? NameOf(i).empty() : EqualsIgnoringCase(NameOf(i), name)) return i;
  }
  return std::nullopt;
}

}  // namespace sab
