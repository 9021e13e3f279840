#include "check/elements.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "check/markup.h"
#include "project/rule_words.h"
#include "text/ascii.h"

namespace sab::check {
namespace {

using formats::Kind;
using formats::Need;
using formats::Rule;
using project::Placement;
using project::RuleId;
using xml::kNoNode;
using xml::NodeIndex;
using xml::NodeType;

}  // namespace

Elements::Elements(Reporter& reporter, project::FileIndex file)
    : reporter_(reporter),
      index_(file),
      file_(reporter.GetProject().At(file)),
      xml_(file_.Xml()),
      schema_(file_.GetSchema()),
      facts_(SchemaFacts::Of(schema_.Form().kind)),
      is_catalogue_(schema_.Form().kind == Kind::kCatalogue) {}

std::string Elements::NameOf(NodeIndex node) const { return std::string(xml_.LocalNameOf(node)); }

Related Elements::AlsoAt(NodeIndex node, std::string message) const {
  return {reporter_.At(index_, file_.TagSpan(node)), std::move(message)};
}

// The first of a set of rules, which is not empty.
RuleId Elements::FirstIn(project::ContentId content, RuleSet rules) const {
  return static_cast<RuleId>(schema_.FirstRule(content) +
                             static_cast<unsigned>(std::countr_zero(rules)));
}

NodeIndex Elements::FirstOf(NodeIndex parent, RuleId rule) {
  const auto [first, is_new] = first_.try_emplace({parent, rule}, kNoNode);
  if (!is_new) return first->second;
  NodeIndex child = xml_.FirstChildElement(parent);
  while (child != kNoNode && file_.RuleIdOf(child) != rule) child = xml_.NextElement(child);
  return first->second = child;
}

void Elements::Check(std::vector<Resource>& resources) {
  const NodeIndex root = xml_.Root();
  if (file_.PlacementOf(root) == Placement::kForeign) {
    Add(Mistake::kForeignNamespace, file_.TagSpan(root),
        {"the document element is in a namespace, in which the server does not look for it: "
         "remove its prefix or xmlns"});
  }
  CheckAttributes(reporter_, index_, root);
  Open(root, schema_.RootContent(), project::kNoRule);
  const NodeIndex count = xml_.NodeCount();
  for (NodeIndex node = root + 1; node < count; ++node) {
    const xml::Node& at = xml_.At(node);
    if (at.parent == kNoNode) break;  // what follows the document element
    while (node >= frames_.back().end) Close();
    if (at.type == NodeType::kElement) {
      CheckElement(node, resources);
    } else if (at.type == NodeType::kText || at.type == NodeType::kCData ||
               at.type == NodeType::kComment) {
      CheckOther(node);
    }
  }
  while (!frames_.empty()) Close();
  ReportMissing();
  CheckReplacementCharacters();
}

void Elements::CheckElement(NodeIndex node, std::vector<Resource>& resources) {
  const Placement placement = file_.PlacementOf(node);
  if (placement == Placement::kInside) return;
  is_next_lost_ = false;
  Frame& parent = frames_.back();
  if (placement != Placement::kKnown) {
    CheckStrange(node, placement, parent);
    if (placement >= Placement::kUnknown) return;
  }
  if (!xml_.HasOnlyText(node)) CheckAttributes(reporter_, index_, node);
  const RuleId rule = file_.RuleIdOf(node);
  const RuleFacts& facts = facts_.OfRule(rule);
  if (placement != Placement::kMisplaced) {
    if ((parent.seen & facts.bit) != 0) {
      CheckRepetition(node, rule, parent);
    }
    parent.seen |= facts.bit;
  }
  if (facts.is_value) {
    CheckValue(node, rule, parent, resources);
  } else if (xml_.HasOnlyText(node)) {
    // Of an element of any name it is said that it is stray.
    if (schema_.At(rule).name != formats::kAnyName && placement != Placement::kMisplaced) {
      CheckStray(node, file_.ValueSpan(node));
    }
    Open(node, file_.ContentOf(node), rule);
  } else {
    Open(node, file_.ContentOf(node), rule);
  }
}

// --- structure ---

void Elements::CheckStrange(NodeIndex node, Placement placement, Frame& parent) {
  const std::string name = NameOf(node);
  const project::File::Suggestion suggestion = file_.SuggestionFor(node);
  const std::string_view around =
      xml_.ParentOf(node) == kNoNode ? std::string_view() : xml_.LocalNameOf(xml_.ParentOf(node));
  Words words;
  if (!suggestion.name.empty()) words.suggestion = Tag(suggestion.name);
  switch (placement) {
    case Placement::kMisspelt:
    case Placement::kUnknown: {
      ++parent.unknown;
      const bool differs_in_case_only = EqualsIgnoringAsciiCase(name, suggestion.name);
      words.message = "no element " + Tag(name) + " is known in " + Tag(around) +
                      (differs_in_case_only ? ": letter case counts" : "");
      if (suggestion.is_certain) words.fix = Fix{node, std::string(suggestion.name), {}};
      Add(Mistake::kUnknownElement, file_.TagSpan(node), std::move(words));
      break;
    }
    case Placement::kMisplaced:
      misplaced_.push_back(node);
      break;
    case Placement::kForeign: {
      const NodeIndex outer = xml_.ParentOf(node);
      if (outer != kNoNode && file_.PlacementOf(outer) == Placement::kForeign) break;
      ReportForeign(reporter_, index_, node);
      break;
    }
    case Placement::kInValue:
      words.message = Tag(name) + " is in " + Tag(around) +
                      ", which has a text: the server joins all texts in it";
      Add(Mistake::kElementInValue, file_.TagSpan(node), std::move(words));
      break;
    default:
      break;
  }
}

void Elements::CheckRepetition(NodeIndex node, RuleId rule, Frame& parent) {
  std::string which;
  Mistake mistake = Mistake::kDuplicateValue;
  switch (facts_.OfRule(rule).repetition) {
    case Repetition::kAnother:
      return;
    case Repetition::kFirstCounts:
      which = "the first counts";
      break;
    case Repetition::kLastCounts:
      which = "the last counts";
      break;
    case Repetition::kSticky:
      which = schema_.At(rule).type == formats::Type::kOne ? "one that is 1 decides"
                                                           : "one that is 0 decides";
      break;
    case Repetition::kLost:
      mistake = Mistake::kDuplicateSection;
      which = "only the first is read, and this one is lost";
      is_next_lost_ = true;
      break;
    case Repetition::kNamesOthers:
      if (parent.has_new_entries) return;
      which = "the last before the entries counts";
      break;
  }
  Words words{Tag(schema_.At(rule).name) + " is there twice: " + which};
  const NodeIndex first = FirstOf(xml_.ParentOf(node), rule);
  if (first != kNoNode && first != node) words.related.push_back(AlsoAt(first, "the first one"));
  Add(mistake, file_.TagSpan(node), std::move(words));
}

// A text or a comment.
void Elements::CheckOther(NodeIndex node) {
  const xml::Node& at = xml_.At(node);
  const Placement placement = file_.PlacementOf(at.parent);
  if (placement >= Placement::kUnknown || placement == Placement::kMisplaced) return;
  const RuleId rule = file_.RuleIdOf(at.parent);
  const bool is_value = rule != project::kNoRule && facts_.OfRule(rule).is_value;
  if (is_value || at.type == NodeType::kComment) return;
  const std::string_view text = xml_.TextBytes();
  std::size_t from = at.start;
  std::size_t to = at.end;
  while (from < to && xml::Has(text[from], xml::kSpace)) ++from;
  while (to > from && xml::Has(text[to - 1], xml::kSpace)) --to;
  if (from < to) CheckStray(at.parent, {from, to});
}

void Elements::CheckStray(NodeIndex parent, project::Span span) {
  Add(Mistake::kStrayText, span,
      {"the text " + Quoted(xml_.TextBytes().substr(span.from, span.to - span.from)) + " in " +
       Tag(xml_.LocalNameOf(parent)) + " is not read"});
}

// Of an element every node of which is a text of its own, a comment as well.
void Elements::CheckEachNode(NodeIndex node) {
  for (NodeIndex child = xml_.FirstChild(node); child != kNoNode; child = xml_.NextSibling(child)) {
    if (xml_.TypeOf(child) != NodeType::kComment && xml_.TypeOf(child) != NodeType::kInstruction) {
      continue;
    }
    Add(Mistake::kElementInValue, {xml_.At(child).start, xml_.At(child).end},
        {"a comment in " + Tag(xml_.LocalNameOf(node)) +
         " is read as a text of its own: move it out of the element"});
  }
}

// --- what an element holds as a whole ---

void Elements::Open(NodeIndex node, project::ContentId content, RuleId rule) {
  Frame frame;
  frame.node = node;
  const bool is_last = xml_.NextSibling(node) == kNoNode;
  const bool is_inside = !frames_.empty() && frames_.back().node == xml_.ParentOf(node);
  // The last one ends where the element around it does; EndOf would go through all around it.
  frame.end = is_last && is_inside ? frames_.back().end : xml_.EndOf(node);
  frame.content = content;
  frame.rule = rule;
  frame.is_lost = std::exchange(is_next_lost_, false) || (is_inside && frames_.back().is_lost);
  if (rule != project::kNoRule && facts_.OfRule(rule).is_joined) {
    frame.seen = joined_[{frames_.empty() ? kNoNode : frames_.back().node, rule}];
  }
  frames_.push_back(frame);
}

void Elements::Close() {
  const Frame frame = frames_.back();
  frames_.pop_back();
  Frame* const parent = frames_.empty() ? nullptr : &frames_.back();
  if (parent && frame.rule != project::kNoRule && facts_.OfRule(frame.rule).is_joined) {
    joined_[{parent->node, frame.rule}] |= frame.seen;
  }
  if (!frame.is_lost) {
    CheckNeeds(frame);
    CheckNames(frame);
  }
  if (parent && frame.rule != project::kNoRule) CheckEntry(frame, parent);
}

bool Elements::HasMore(NodeIndex node) const {
  const RuleId rule = file_.RuleIdOf(node);
  if (rule == project::kNoRule || !facts_.OfRule(rule).is_joined) return false;
  for (NodeIndex next = xml_.NextElement(node); next != kNoNode; next = xml_.NextElement(next)) {
    if (file_.RuleIdOf(next) == rule) return true;
  }
  return false;
}

void Elements::CheckNeeds(const Frame& frame) {
  const ContentFacts& content = facts_.OfContent(frame.content);
  RuleSet lacking = content.required & ~frame.seen;
  if (static_cast<unsigned>(std::popcount(lacking)) <= frame.unknown) lacking = 0;
  if (lacking != 0 && HasMore(frame.node)) lacking = 0;
  for (; lacking != 0; lacking &= lacking - 1) {
    const RuleId id = FirstIn(frame.content, lacking);
    RuleId inner = project::kNoRule;
    if (!schema_.At(id).IsRequired()) inner = schema_.FirstRule(schema_.ContentOf(id));
    missing_.push_back({frame.node, id, inner});
  }
  if (frame.empty_command != kNoNode && (frame.seen & content.instead) == 0) {
    Add(Mistake::kEmptyValue, file_.TagSpan(frame.empty_command),
        {Tag("Command") + " is empty, and " + Tag(xml_.LocalNameOf(frame.node)) +
         " has nothing else to do"});
  }
  if (frame.rule == project::kNoRule) return;
  const Rule& rule = schema_.At(frame.rule);
  const bool needs_entry = rule.need == Need::kNotEmpty || rule.need == Need::kEntryIfPresent;
  if (needs_entry && frame.entries == 0 && !frame.has_dropped_entry && frame.unknown == 0) {
    const Rule& entry = rule.Content().front();
    Add(Mistake::kRequiredMissing, file_.TagSpan(frame.node),
        {Tag(rule.name) + " has no entry: give it " + project::WithArticle(Tag(entry.name)) +
         (rule.need == Need::kEntryIfPresent ? ", or leave it out" : "")});
  }
}

// What names the entries in an element, and what else they are of no use without.
void Elements::CheckNames(const Frame& frame) {
  const ContentFacts& content = facts_.OfContent(frame.content);
  const std::string_view name = xml_.LocalNameOf(frame.node);
  if (is_catalogue_ && content.naming != 0) {
    if (frame.unnamed_entry != kNoNode && !frame.is_revision_dropped && frame.unknown == 0) {
      Add(Mistake::kStandardDroppedRevision, file_.TagSpan(frame.unnamed_entry),
          {"the symbol has no RevParserCLSID, so this revision is dropped"});
    }
    return;
  }
  RuleSet lacking = content.expected & ~frame.seen;
  if (frame.unknown > 0) lacking = 0;
  if ((lacking & content.naming) != 0 && frame.needing_name == 0 && frame.seen != 0) {
    lacking &= ~content.naming;
  }
  for (; lacking != 0; lacking &= lacking - 1) {
    const RuleId id = FirstIn(frame.content, lacking);
    Add(Mistake::kRequiredMissing, file_.TagSpan(frame.node),
        {Tag(name) + " has no " + Tag(schema_.At(id).name) + ": it is of no use without"});
  }
}

void Elements::CheckEntry(const Frame& frame, Frame* parent) {
  const RuleFacts& facts = facts_.OfRule(frame.rule);
  if (!facts.is_entry || file_.PlacementOf(frame.node) == Placement::kMisplaced) return;
  const ContentFacts& content = facts_.OfContent(frame.content);
  // Entries of entries, paths mostly, count for the list around both.
  const bool has_list =
      (content.completing != 0) && schema_.At(schema_.FirstRule(frame.content)).IsList();
  const RuleSet lacking = content.completing & ~frame.seen;
  bool is_kept = (content.completing & ~frame.filled) == 0;
  if (has_list) is_kept = frame.entries > 0;
  if (lacking != 0 && frame.unknown == 0) {
    const RuleId id = FirstIn(frame.content, lacking);
    parent->has_dropped_entry = true;
    Add(Mistake::kIncompleteEntry, file_.TagSpan(frame.node),
        {Tag(xml_.LocalNameOf(frame.node)) + " has no " + Tag(schema_.At(id).name) +
         ", so the server drops it"});
  }
  parent->has_dropped_entry |= frame.has_dropped_entry || frame.unknown > 0;
  if (is_kept) ++parent->entries;
  parent->has_new_entries = true;
  const RuleSet naming = facts_.OfContent(parent->content).naming;
  if (naming == 0 || (frame.filled & content.command) != 0) return;
  ++parent->needing_name;
  if ((parent->seen & naming) == 0 && parent->unnamed_entry == kNoNode) {
    parent->unnamed_entry = frame.node;
  }
}

// What is missing in one place and is in another was moved there.
void Elements::ReportMissing() {
  for (const Missing& missing : missing_) {
    const RuleId wanted = missing.inner == project::kNoRule ? missing.rule : missing.inner;
    const std::string name(schema_.At(wanted).name);
    std::string path = name;
    if (missing.inner != project::kNoRule) {
      path = std::string(schema_.At(missing.rule).name) + "/" + name;
    }
    const std::string around = Tag(xml_.LocalNameOf(missing.parent));
    const auto moved = std::ranges::find_if(misplaced_, [&](NodeIndex node) {
      return xml_.LocalNameOf(node) == name ||
             xml_.LocalNameOf(node) == schema_.At(missing.rule).name;
    });
    if (moved != misplaced_.end()) {
      Add(Mistake::kRequiredMissing, file_.TagSpan(*moved),
          {Tag(path) + " must be in " + around + ", and is here instead"});
      misplaced_.erase(moved);
    } else {
      Add(Mistake::kRequiredMissing, file_.TagSpan(missing.parent),
          {Tag(path) + " is missing in " + around + ": the server refuses the file"});
    }
  }
  for (const NodeIndex node : misplaced_) {
    const project::File::Suggestion suggestion = file_.SuggestionFor(node);
    Words words{Tag(xml_.LocalNameOf(node)) + " is not read in " +
                Tag(xml_.LocalNameOf(xml_.ParentOf(node))) +
                ", though it is known elsewhere in this kind of file"};
    if (!suggestion.name.empty()) words.suggestion = Tag(suggestion.name);
    Add(Mistake::kMisplacedElement, file_.TagSpan(node), std::move(words));
  }
}

}  // namespace sab::check
