#include "preview/element.h"

#include <algorithm>

#include "xml/characters.h"

namespace sab::preview {

using xml::kNoNode;
using xml::NodeIndex;

Values::Values(const project::File& file, std::span<const NodeIndex> parts) : file_(file) {
  if (parts.empty()) return;
  content_ = file.ContentOf(parts.front());
  if (parts.size() == 1) {
    only_part_ = parts.front();
  } else {
    parts_.assign(parts.begin(), parts.end());
  }
  const project::Schema& schema = file.GetSchema();
  for (const NodeIndex part : parts) {
    ForEachKnown(file, part, [&](NodeIndex child, const formats::Rule&) {
      const unsigned index = schema.IndexOf(file.RuleIdOf(child));
      if (index < kMaxRules) last_[index] = child;
    });
  }
}

NodeIndex Values::NodeOf(std::string_view name) const {
  const project::RuleId rule = file_.GetSchema().Find(content_, name);
  if (rule == project::kNoRule) return kNoNode;
  const unsigned index = file_.GetSchema().IndexOf(rule);
  return index < kMaxRules ? last_[index] : kNoNode;
}

std::string_view Values::operator[](std::string_view name) const {
  const NodeIndex node = NodeOf(name);
  return node == kNoNode ? std::string_view() : file_.TextOf(node);
}

std::int32_t Values::Number(std::string_view name, std::int32_t initial) const {
  const NodeIndex node = NodeOf(name);
  return node == kNoNode ? initial : LeadingNumber(file_.TextOf(node));
}

bool Values::Any(std::string_view name, std::string_view text) const {
  if (NodeOf(name) == kNoNode) return false;
  if ((*this)[name] == text) return true;
  bool found = false;
  const auto look = [&](NodeIndex child, const formats::Rule& rule) {
    found = found || (rule.name == name && file_.TextOf(child) == text);
  };
  if (only_part_ != kNoNode) ForEachKnown(file_, only_part_, look);
  for (const NodeIndex part : parts_) ForEachKnown(file_, part, look);
  return found;
}

std::int32_t LeadingNumber(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && xml::Has(text[at], xml::kSpace)) ++at;
  const bool is_negative = at < text.size() && text[at] == '-';
  if (is_negative || (at < text.size() && text[at] == '+')) ++at;
  std::int64_t number = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    number = std::min<std::int64_t>(number * 10 + (text[at] - '0'), std::int64_t{1} << 32);
  }
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(is_negative ? -number : number, INT32_MIN, INT32_MAX));
}

}  // namespace sab::preview
