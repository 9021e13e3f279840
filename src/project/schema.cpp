#include "project/schema.h"

#include <algorithm>
#include <map>
#include <memory>

namespace sab::project {
namespace {

std::size_t SlotOf(std::string_view name) {
  const auto byte = [](char c) { return static_cast<unsigned char>(c); };
  const std::size_t middle = byte(name[name.size() / 2]);
  return (name.size() * 7 + byte(name.front()) * std::size_t{3} +
          byte(name.back()) * std::size_t{5} + middle) %
         64;
}

bool IsSame(std::string_view a, std::string_view b) {
  return a.size() == b.size() && a.front() == b.front() && a == b;
}

}  // namespace

const Schema& Schema::Of(formats::Kind kind) {
  static const auto schemas = [] {
    std::map<formats::Kind, std::unique_ptr<const Schema>> all;
    for (const formats::Document* const form : formats::Documents()) {
      all[form->kind].reset(new Schema(*form));
    }
    return all;
  }();
  return *schemas.at(kind);
}

Schema::Schema(const formats::Document& form) : form_(&form) {
  rules_.push_back({nullptr, kNothing, kNothing});
  contents_.emplace_back();
  keys_.push_back(nullptr);
  Add(form.content);
}

// Contents that hold themselves are added once: they are known by the place of their rules.
ContentId Schema::Add(std::span<const formats::Rule> rules) {
  if (rules.empty()) return kNothing;
  const auto known = std::find(keys_.begin(), keys_.end(), rules.data());
  if (known != keys_.end()) return static_cast<ContentId>(known - keys_.begin());
  const auto content = static_cast<ContentId>(contents_.size());
  keys_.push_back(rules.data());
  contents_.emplace_back();
  const auto first = static_cast<RuleId>(rules_.size());
  contents_[content].first = first;
  contents_[content].count = static_cast<std::uint8_t>(rules.size());
  for (std::size_t i = 0; i < rules.size(); ++i) {
    rules_.push_back({&rules[i], kNothing, content});
    if (rules[i].name == formats::kAnyName) {
      contents_[content].any = static_cast<RuleId>(first + i);
      continue;
    }
    auto& slots = contents_[content].slots;
    std::size_t slot = SlotOf(rules[i].name);
    while (slots[slot] != 0) slot = (slot + 1) % slots.size();
    slots[slot] = static_cast<std::uint8_t>(i + 1);
  }
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const formats::Rule& rule = rules[i];
    // A value of any name holds others of its kind, at any depth.
    const bool is_free = rule.name == formats::kAnyName && rule.type != formats::Type::kNone;
    const ContentId inside = is_free ? content : Add(rule.Content());
    rules_[first + i].content = inside;
  }
  return content;
}

RuleId Schema::Find(ContentId content, std::string_view name) const {
  const Content& found = contents_[content];
  if (found.count == 0) return kNoRule;
  for (std::size_t slot = SlotOf(name); found.slots[slot] != 0;
       slot = (slot + 1) % found.slots.size()) {
    const auto rule = static_cast<RuleId>(found.first + found.slots[slot] - 1);
    if (IsSame(rules_[rule].rule->name, name)) return rule;
  }
  return found.any;
}

RuleId Schema::FindAnywhere(std::string_view name) const {
  for (std::size_t i = 1; i < rules_.size(); ++i) {
    if (rules_[i].rule->name == name) return static_cast<RuleId>(i);
  }
  return kNoRule;
}

std::vector<std::string_view> Schema::NamesIn(ContentId content) const {
  std::vector<std::string_view> names;
  for (unsigned i = 0; i < contents_[content].count; ++i) {
    const std::string_view name = rules_[contents_[content].first + i].rule->name;
    if (name != formats::kAnyName) names.push_back(name);
  }
  return names;
}

std::vector<std::string_view> Schema::AllNames() const {
  std::vector<std::string_view> names;
  for (std::size_t i = 1; i < rules_.size(); ++i) {
    if (rules_[i].rule->name != formats::kAnyName) names.push_back(rules_[i].rule->name);
  }
  std::ranges::sort(names);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

}  // namespace sab::project
