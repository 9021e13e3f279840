#include "check/rule_facts.h"

#include <algorithm>
#include <map>
#include <memory>

namespace sab::check {
namespace {

using formats::Count;
using formats::Kind;
using formats::Role;
using formats::Rule;
using formats::Subject;
using formats::Type;

TextKind TextKindOf(const Rule& rule) {
  switch (rule.type) {
    case Type::kGuid:
      return rule.is_any_text ? TextKind::kAny : TextKind::kGuid;
    case Type::kPath:
      return rule.is_any_text ? TextKind::kAny : TextKind::kPath;
    case Type::kImage:
      return TextKind::kImage;
    default:
      break;
  }
  if (IsTruth(rule.type)) return TextKind::kFlag;
  if (IsWhole(rule.type)) return TextKind::kWhole;
  if (IsDecimal(rule.type)) return TextKind::kDecimal;
  return TextKind::kAny;
}

// A group of values that are found by their paths is one whole, however often it is there; of any
// other group only the first is read.
bool HasValuesByPath(const Rule& rule) {
  return std::ranges::all_of(rule.Content(), [](const Rule& value) {
    return value.type != Type::kNone && value.count == Count::kFirst &&
           value.name != formats::kAnyName;
  });
}

Repetition RepetitionOf(const Rule& rule) {
  if (rule.count == Count::kEach || rule.count == Count::kMerged) return Repetition::kAnother;
  if (rule.holds_for_following) return Repetition::kNamesOthers;
  if (rule.count == Count::kSticky) return Repetition::kSticky;
  if (rule.type != Type::kNone) {
    return rule.count == Count::kFirst ? Repetition::kFirstCounts : Repetition::kLastCounts;
  }
  return HasValuesByPath(rule) ? Repetition::kAnother : Repetition::kLost;
}

bool HoldsRequired(const Rule& rule) {
  return rule.IsRequired() || std::ranges::any_of(rule.Content(), [&rule](const Rule& inner) {
           return rule.count == Count::kFirst && inner.IsRequired();
         });
}

}  // namespace

const SchemaFacts& SchemaFacts::Of(Kind kind) {
  static const auto facts = [] {
    std::map<Kind, std::unique_ptr<const SchemaFacts>> all;
    for (const formats::Document* const form : formats::Documents()) {
      all[form->kind].reset(new SchemaFacts(project::Schema::Of(form->kind)));
    }
    return all;
  }();
  return *facts.at(kind);
}

SchemaFacts::SchemaFacts(const project::Schema& schema) {
  rules_.resize(schema.RuleCount());
  contents_.resize(schema.ContentCount());
  for (project::RuleId id = 1; id < schema.RuleCount(); ++id) {
    const Rule& rule = schema.At(id);
    RuleFacts& facts = rules_[id];
    ContentFacts& home = contents_[schema.HomeOf(id)];
    facts.bit = RuleSet{1} << schema.IndexOf(id);
    facts.repetition = RepetitionOf(rule);
    facts.text = TextKindOf(rule);
    facts.is_value = rule.type != Type::kNone;
    facts.is_entry = rule.IsList();
    facts.is_joined =
        !facts.is_value && !facts.is_entry && facts.repetition == Repetition::kAnother;
    facts.is_command = rule.role == Role::kRefersTo && rule.subject == Subject::kCommand;
    const bool is_number = facts.text == TextKind::kFlag || facts.text == TextKind::kWhole ||
                           facts.text == TextKind::kDecimal;
    // What has a class of its own, a command or a symbol, is of no use without it; other classes
    // may be empty like any text.
    facts.empty_is_wrong = is_number || rule.name == "CLSID" || rule.holds_for_following ||
                           (rule.role == Role::kDefines && rule.when_missing.empty()) ||
                           (rule.role == Role::kRefersTo && rule.IsList());
    if (HoldsRequired(rule)) home.required |= facts.bit;
    if (rule.IsForItem()) home.completing |= facts.bit;
    if (rule.is_expected) home.expected |= facts.bit;
    if (rule.holds_for_following) home.naming |= facts.bit;
    if (facts.is_command && rule.name == "Command") home.command |= facts.bit;
    const bool does_without = facts.is_entry || rule.type == Type::kGuid ||
                              (rule.role == Role::kRefersTo && rule.subject == Subject::kMenu);
    if (does_without) home.instead |= facts.bit;
  }
}

}  // namespace sab::check
