#include "settings/match_rules.h"

#include <algorithm>

#include "binding/bind.h"
#include "formats/settings_system.h"
#include "platform/text_comparison.h"

namespace sab {
namespace {

constexpr std::string_view kRuleElement = kElement<formats::kMatchRules, "MatchRule">;
constexpr std::string_view kKeyElement = kElement<formats::kMatchRule, "Key">;
constexpr std::string_view kValueElement = kElement<formats::kMatchRule, "Value">;

auto FindEntry(std::vector<MatchRules::Entry>& entries, TextView key) {
  return std::find_if(entries.begin(), entries.end(),
                      [key](const MatchRules::Entry& entry) { return entry.key.View() == key; });
}

auto FindValue(std::vector<Bstr>& values, TextView value) {
  return std::find_if(values.begin(), values.end(), [value](const Bstr& known) {
    return EqualsIgnoringCase(known.View(), value);
  });
}

void InsertValue(MatchRules::Entry& entry, TextView value) {
  if (FindValue(entry.values, value) == entry.values.end()) entry.values.emplace_back(value);
}

}  // namespace

MatchRules::Entry& MatchRules::EntryOf(TextView key) {
  const auto found = FindEntry(entries_, key);
  return found != entries_.end() ? *found : entries_.emplace_back(Entry{Bstr(key), {}});
}

void MatchRules::Insert(TextView key, TextView value) {
  const auto found = FindEntry(entries_, key);
  if (found != entries_.end()) {
    InsertValue(*found, value);
  } else {
    std::vector<Bstr> values;
    values.emplace_back(value);
    entries_.push_back({Bstr(key), std::move(values)});
  }
}

void MatchRules::Remove(TextView key, TextView value) {
  const auto entry = FindEntry(entries_, key);
  if (entry == entries_.end()) return;
  const auto found = FindValue(entry->values, value);
  if (found == entry->values.end()) return;
  entry->values.erase(found);
  if (entry->values.empty()) entries_.erase(entry);
}

void MatchRules::Read(const ConfigElement& element, Text& scratch) {
  MatchRules rules;
  Text key;
  for (const ConfigElement rule : element.Children()) {
    if (!rule.Is(kRuleElement)) continue;
    key.clear();
    for (const ConfigElement child : rule.Children()) {
      if (child.Is(kKeyElement)) key = child.ReadText(scratch);
    }
    Entry& entry = rules.EntryOf(key);  // a rule without values stays in the file
    for (const ConfigElement child : rule.Children()) {
      if (child.Is(kValueElement)) InsertValue(entry, child.ReadText(scratch));
    }
  }
  entries_ = std::move(rules.entries_);
}

void MatchRules::Write(AppendedElement element) const {
  for (const Entry& entry : entries_) {
    AppendedElement rule = element.Append(kRuleElement);
    rule.Append(kKeyElement, entry.key.View());
    for (const Bstr& value : entry.values) rule.Append(kValueElement, value.View());
  }
}

}  // namespace sab
