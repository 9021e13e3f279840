#include <algorithm>

#include "check/elements.h"
#include "check/markup.h"
#include "check/text_rules.h"
#include "project/path_finder.h"

namespace sab::check {
namespace {

using formats::Need;
using formats::Rule;
using formats::Subject;
using project::Placement;
using project::RuleId;
using xml::kNoNode;
using xml::NodeIndex;

}  // namespace

void Elements::CheckValue(NodeIndex node, RuleId id, Frame& parent,
                          std::vector<Resource>& resources) {
  const Rule& rule = schema_.At(id);
  const RuleFacts& facts = facts_.OfRule(id);
  if (rule.each_node_counts && !xml_.HasOnlyText(node)) CheckEachNode(node);
  const bool is_empty = !file_.HasText(node);
  const bool is_here = file_.PlacementOf(node) != Placement::kMisplaced;
  if (is_here && facts.repetition == Repetition::kNamesOthers) {
    parent.has_new_entries = false;
    if (parent.unnamed_entry != kNoNode && (parent.filled & facts.bit) == 0 && !is_empty) {
      const NodeIndex entry = parent.unnamed_entry;
      Words words{Tag(xml_.LocalNameOf(entry)) + " is before the " + Tag(rule.name) +
                  " that it is for: move " + Tag(rule.name) + " up"};
      words.related.push_back(AlsoAt(node, "the " + std::string(rule.name) + " after it"));
      Add(is_catalogue_ ? Mistake::kStandardDroppedRevision : Mistake::kCommandAfterEntry,
          file_.TagSpan(entry), std::move(words));
      parent.unnamed_entry = kNoNode;
      parent.is_revision_dropped = true;
    }
  }
  if (is_empty) {
    if (is_here && file_.PlacementOf(node) != Placement::kMisspelt) {
      CheckEmpty(node, rule, facts, parent);
    }
    return;
  }
  if (is_here) {
    parent.filled |= facts.bit;
    if (facts.is_entry) ++parent.entries;
  }
  if (facts.text == TextKind::kAny) return;
  const std::string_view text = file_.TextOf(node);
  // What is wrong with a text that was damaged is said once.
  if (IsDamaged(file_, node, text)) return;
  if (facts.text == TextKind::kPath || facts.text == TextKind::kImage) {
    if (facts.text == TextKind::kPath || project::IsAbsolute(text)) CheckPath(node, text);
    const bool is_document = rule.role == formats::Role::kLeadsTo;
    if (!is_document && !project::IsAbsolute(text)) resources.push_back({node, id});
    return;
  }
  CheckText(node, rule, facts, text);
}

void Elements::CheckText(NodeIndex node, const Rule& rule, const RuleFacts& facts,
                         std::string_view text) {
  if (facts.text == TextKind::kGuid) {
    if (IsGuid(text)) return;
    Words words{Quoted(text) + " is no class identifier: {00000000-0000-0000-0000-000000000000}"};
    if (rule.need == Need::kCompletesItemIfGuid) {
      words.message += "; the entry is dropped";
    }
    const std::string braced = "{" + std::string(text) + "}";
    if (IsGuid(braced)) words.suggestion = braced;
    Add(Mistake::kBadGuid, file_.ValueSpan(node), std::move(words));
    return;
  }
  // The first letter of a text tells most of what is right.
  if (text.size() == 1 && text[0] >= '0' && text[0] <= '1' && facts.text == TextKind::kFlag &&
      (rule.type == formats::Type::kOne || rule.type == formats::Type::kNotZero)) {
    return;
  }
  const std::optional<Complaint> complaint = facts.text == TextKind::kFlag ? AgainstFlag(rule, text)
                                             : facts.text == TextKind::kWhole
                                                 ? AgainstWhole(rule, text)
                                                 : AgainstDecimal(rule, text);
  if (!complaint) return;
  const Mistake mistake = is_catalogue_                   ? Mistake::kStandardBadValue
                          : complaint->is_range           ? Mistake::kNumberOutOfRange
                          : facts.text == TextKind::kFlag ? Mistake::kBadFlag
                                                          : Mistake::kBadNumber;
  Add(mistake, file_.ValueSpan(node), {complaint->message});
}

void Elements::CheckEmpty(NodeIndex node, const Rule& rule, const RuleFacts& facts, Frame& parent) {
  const std::string name = Tag(rule.name);
  const project::Span span = file_.TagSpan(node);
  if (rule.need == Need::kNotEmpty || rule.need == Need::kFilled) {
    Add(Mistake::kRequiredMissing, span, {name + " is empty, and the server needs its text"});
  } else if (rule.IsForItem()) {
    parent.has_dropped_entry = true;
    Add(Mistake::kIncompleteEntry, span,
        {name + " is empty, so the server drops " +
         (facts.is_entry
              ? "it"
              : "the " + Tag(xml_.LocalNameOf(xml_.ParentOf(node))) + " that it is for")});
  } else if (is_catalogue_ && rule.holds_for_following) {
    Add(Mistake::kStandardDroppedRevision, span,
        {name + " is empty, so the revisions after it are dropped"});
  } else if (is_catalogue_ && rule.subject == Subject::kSymbol) {
    Add(Mistake::kStandardSymbolId, span, {"the identifier of the symbol is empty"});
  } else if (rule.is_expected) {
    Add(Mistake::kRequiredMissing, span,
        {name + " is empty: " + Tag(xml_.LocalNameOf(xml_.ParentOf(node))) +
         " is of no use without it"});
  } else if (facts.empty_is_wrong) {
    Add(Mistake::kEmptyValue, span, {name + " is empty: give it a text, or leave the element out"});
  } else if (facts.is_command && (facts.bit & facts_.OfContent(parent.content).command) != 0) {
    parent.empty_command = node;
  }
}

void Elements::CheckPath(NodeIndex node, std::string_view text) {
  const bool is_address = text.find("://") != text.npos;
  if (!project::IsAbsolute(text) && !is_address) return;
  Add(Mistake::kPathNotRelative, file_.ValueSpan(node),
      {"the path " + Quoted(text) + " is not relative to the folder of this file"});
}

// Texts, not comments: an element once, at its first such character.
void Elements::CheckReplacementCharacters() {
  const std::string_view text = xml_.TextBytes();
  const bool has_reference = text.find("&#") != text.npos;
  if (!has_reference && text.find(kReplacementCharacter) == text.npos) return;
  for (NodeIndex node = 1; node < xml_.NodeCount(); ++node) {
    CheckReplacementCharacter(reporter_, index_, node);
  }
}

}  // namespace sab::check
