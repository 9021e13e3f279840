#include "preview/element.h"

#include <algorithm>

#include "text/numbers.h"

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
  return node == kNoNode ? initial : text::ParseInt(file_.TextOf(node));
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

}  // namespace sab::preview
