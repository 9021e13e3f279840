#include "check/settings.h"

#include <algorithm>
#include <map>
#include <set>

#include "check/markup.h"
#include "check/text_rules.h"
#include "text/ascii.h"
#include "text/distance.h"

namespace sab::check {
namespace {

using formats::Rule;
using formats::Type;
using project::File;
using xml::kNoNode;
using xml::NodeIndex;

std::vector<NodeIndex> Children(const xml::Document& xml, NodeIndex parent) {
  std::vector<NodeIndex> children;
  for (NodeIndex child = xml.FirstChildElement(parent); child != kNoNode;
       child = xml.NextElement(child)) {
    if (!xml.IsInNamespace(child)) children.push_back(child);
  }
  return children;
}

const Rule* RuleNamed(std::span<const Rule> rules, std::string_view name) {
  const auto found = std::ranges::find(rules, name, &Rule::name);
  return found == rules.end() ? nullptr : &*found;
}

// One block of settings.
class Block {
 public:
  Block(Reporter& reporter, project::FileIndex file)
      : reporter_(reporter),
        index_(file),
        file_(reporter.GetProject().At(file)),
        xml_(file_.Xml()) {}

  void CheckKeys(const std::vector<NodeIndex>& nodes, const formats::SettingsGroup& group,
                 const std::set<NodeIndex>& other_blocks) {
    std::map<const Rule*, NodeIndex> first;
    for (const NodeIndex node : nodes) {
      CheckContainer(node, group.keys);
      for (const NodeIndex child : Children(xml_, node)) {
        if (other_blocks.contains(child)) continue;
        const Rule* const rule = RuleNamed(group.keys, xml_.NameOf(child));
        if (!rule) {
          ReportUnknown(child, group);
          continue;
        }
        if (IsCopy(child, first.try_emplace(rule, child).first->second)) continue;
        if (rule->use == formats::Use::kOnlySaved) {
          Add(Mistake::kSettingsUnusedKey, file_.TagSpan(child),
              {Tag(rule->name) + " is saved by the server and never loaded"});
          continue;
        }
        CheckKey(child, *rule);
      }
    }
  }

  void CheckAnyKeys(const std::vector<NodeIndex>& nodes, const std::set<NodeIndex>& other_blocks) {
    std::map<std::string_view, NodeIndex> first;
    for (const NodeIndex node : nodes) {
      CheckContainer(node, {});
      for (const NodeIndex child : Children(xml_, node)) {
        if (other_blocks.contains(child) || !Children(xml_, child).empty()) continue;
        if (IsCopy(child, first.try_emplace(xml_.NameOf(child), child).first->second)) continue;
        CheckValueMarkup(child);
      }
    }
  }

 private:
  void Add(Mistake mistake, project::Span span, Words words) {
    reporter_.Add(mistake, index_, span, std::move(words));
  }

  bool IsCopy(NodeIndex node, NodeIndex first) {
    if (node == first) return false;
    Words words{Tag(xml_.NameOf(node)) + " is there twice: the first is loaded, this one is not"};
    words.related.push_back({reporter_.At(index_, file_.TagSpan(first)), "the first one"});
    Add(Mistake::kSettingsShadowedCopy, file_.TagSpan(node), std::move(words));
    return true;
  }

  void ReportUnknown(NodeIndex node, const formats::SettingsGroup& group) {
    const std::string_view name = xml_.NameOf(node);
    Words words{std::string(group.class_name) + " has no key " + Tag(name)};
    std::vector<std::string_view> names;
    for (const Rule& rule : group.keys) names.push_back(rule.name);
    const text::Nearest nearest = text::FindNearest(name, names);
    std::string_view meant = nearest.word;
    for (const Rule& rule : group.keys) {
      if (meant.empty() && rule.member == name) meant = rule.name;
    }
    for (const formats::SettingsGroup* const other : formats::SettingsGroups()) {
      if (meant.empty() && RuleNamed(other->keys, name)) {
        words.message += ", which is one of " + std::string(other->class_name);
        break;
      }
    }
    if (!meant.empty()) words.suggestion = Tag(meant);
    if (nearest.is_only) words.fix = Fix{node, std::string(nearest.word), {}};
    Add(Mistake::kSettingsUnknownKey, file_.TagSpan(node), std::move(words));
  }

  void CheckKey(NodeIndex node, const Rule& rule) {
    if (rule.content_size > 0) return CheckStructure(node, rule);
    CheckValueMarkup(node);
    if (HasElements(node, rule)) return;
    const std::string_view text = file_.TextOf(node);
    if (text.find(kReplacementCharacter) != text.npos) return;
    const project::Span span = file_.ValueSpan(node);
    if (ElementOf(rule.type) != Type::kNone) return CheckList(rule, text, span);
    if (IsText(rule.type)) return;
    if (text.empty()) {
      Add(Mistake::kSettingsBadValue, span,
          {Tag(rule.name) + " is empty, which is read as 0: give it a value, or remove it"});
      return;
    }
    const std::optional<Complaint> complaint = IsWhole(rule.type)     ? AgainstWhole(rule, text)
                                               : IsDecimal(rule.type) ? AgainstDecimal(rule, text)
                                                                      : AgainstFlag(rule, text);
    if (!complaint) return;
    Add(complaint->is_range ? Mistake::kSettingsOutOfRange : Mistake::kSettingsBadValue, span,
        {complaint->message});
  }

  // Elements in a value, which are a mistake.
  bool HasElements(NodeIndex node, const Rule& rule) {
    const std::vector<NodeIndex> inner = Children(xml_, node);
    if (inner.empty()) return false;
    Add(Mistake::kSettingsBadStructure, file_.TagSpan(inner.front()),
        {Tag(rule.name) + " is a value and has no elements"});
    return true;
  }

  void CheckList(const Rule& rule, std::string_view text, project::Span span) {
    const bool has_numbers = rule.type != Type::kTextList;
    Rule element = rule;
    element.type = ElementOf(rule.type);
    for (std::string_view rest = text; !rest.empty();) {
      const std::size_t end = std::min(rest.find(';'), rest.size());
      const std::string_view piece = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
      std::string wrong;
      const bool is_blank = piece.find_first_not_of(" \t\r\n") == piece.npos;
      if (is_blank) {
        wrong = "an element of the list is empty";
      } else if (has_numbers) {
        if (const auto complaint = AgainstWhole(element, piece)) {
          wrong =
              Quoted(piece) + " is no " + (complaint->is_range ? "number of its type" : "number");
        }
      } else if (text.find(';') == text.npos && text.find(',') != text.npos) {
        wrong = "the elements are separated by commas";
      }
      if (wrong.empty()) continue;
      Add(Mistake::kSettingsBadList, span,
          {Tag(rule.name) + ": " + wrong + "; semicolons separate the elements of a list"});
      return;
    }
  }

  void CheckValueMarkup(NodeIndex node) {
    if (xml_.HasOnlyText(node)) return CheckReplacementCharacter(reporter_, index_, node);
    CheckAttributes(reporter_, index_, node);
    for (NodeIndex child = xml_.FirstChild(node); child != kNoNode;
         child = xml_.NextSibling(child)) {
      CheckReplacementCharacter(reporter_, index_, child);
    }
  }

  // @param node of a block or a structure; kNoNode for the document
  // @return names of elements in it that are in a namespace
  std::set<std::string_view> CheckContainer(NodeIndex node, std::span<const Rule> rules) {
    CheckStray(node);
    if (node != kNoNode) CheckAttributes(reporter_, index_, node);
    std::set<std::string_view> foreign;
    for (NodeIndex child = xml_.FirstChildElement(node); child != kNoNode;
         child = xml_.NextElement(child)) {
      const std::string_view name = xml_.LocalNameOf(child);
      if (!xml_.IsInNamespace(child) || !RuleNamed(rules, name)) continue;
      ReportForeign(reporter_, index_, child);
      foreign.insert(name);
    }
    return foreign;
  }

  void CheckStray(NodeIndex node) {
    for (NodeIndex child = xml_.FirstChild(node); child != kNoNode;
         child = xml_.NextSibling(child)) {
      const xml::NodeType type = xml_.TypeOf(child);
      if (type != xml::NodeType::kText && type != xml::NodeType::kCData) continue;
      const std::string_view text =
          xml_.TextBytes().substr(xml_.At(child).start, xml_.At(child).end - xml_.At(child).start);
      if (text.find_first_not_of(" \t\r\n") == text.npos) continue;
      const std::size_t from = xml_.At(child).start + text.find_first_not_of(" \t\r\n");
      Add(Mistake::kStrayText, {from, xml_.At(child).end},
          {"the text in " + Tag(xml_.NameOf(node)) + " is not read"});
    }
  }

  void CheckStructure(NodeIndex node, const Rule& rule) {
    if (xml_.HasOnlyText(node)) {
      Add(Mistake::kSettingsBadStructure, file_.ValueSpan(node),
          {Tag(rule.name) + " has elements and no text"});
      return;
    }
    const std::set<std::string_view> foreign = CheckContainer(node, rule.Content());
    std::map<const Rule*, NodeIndex> first;
    for (const NodeIndex child : Children(xml_, node)) {
      const Rule* const inner = RuleNamed(rule.Content(), xml_.NameOf(child));
      if (!inner) {
        Words words{"no element " + Tag(xml_.NameOf(child)) + " is known in " + Tag(rule.name)};
        std::vector<std::string_view> names;
        for (const Rule& known : rule.Content()) names.push_back(known.name);
        const text::Nearest nearest = text::FindNearest(xml_.NameOf(child), names);
        if (!nearest.word.empty()) words.suggestion = Tag(nearest.word);
        if (nearest.is_only) words.fix = Fix{child, std::string(nearest.word), {}};
        Add(Mistake::kSettingsBadStructure, file_.TagSpan(child), std::move(words));
        // What it seems to mean is not also missing.
        if (const Rule* const meant = RuleNamed(rule.Content(), nearest.word)) {
          first.try_emplace(meant, child);
        }
        continue;
      }
      const NodeIndex known = first.try_emplace(inner, child).first->second;
      if (!inner->IsList() && IsCopy(child, known)) continue;
      CheckPart(child, *inner);
    }
    for (const Rule& part : rule.Content()) {
      const bool is_needed = part.is_expected || part.need == formats::Need::kCompletesItem;
      if (!is_needed || first.contains(&part) || foreign.contains(part.name)) continue;
      Add(Mistake::kSettingsBadStructure, file_.TagSpan(node),
          {Tag(rule.name) + " has no " + Tag(part.name) + ": it is of no use without"});
    }
  }

  void CheckPart(NodeIndex node, const Rule& rule) {
    if (rule.content_size > 0) return CheckStructure(node, rule);
    CheckValueMarkup(node);
    if (HasElements(node, rule)) return;
    const std::string_view text = file_.TextOf(node);
    if (text.find(kReplacementCharacter) != text.npos) return;
    const bool is_needed = rule.is_expected || rule.need == formats::Need::kCompletesItem;
    if (text.empty() && is_needed) {
      Add(Mistake::kSettingsBadStructure, file_.TagSpan(node),
          {Tag(rule.name) + " is empty, so the entry is of no use"});
    } else if (!text.empty() && rule.type == Type::kGuid && !IsGuid(text)) {
      Add(Mistake::kSettingsBadValue, file_.ValueSpan(node),
          {Quoted(text) + " is no class identifier, so the entry is dropped"});
    }
  }

  Reporter& reporter_;
  const project::FileIndex index_;
  const File& file_;
  const xml::Document& xml_;
};

}  // namespace

const formats::SettingsGroup* SettingsGroupNamed(std::string_view class_name) {
  for (const formats::SettingsGroup* const group : formats::SettingsGroups()) {
    if (EqualsIgnoringAsciiCase(group->class_name, class_name)) return group;
  }
  return nullptr;
}

bool KeepsAnyKey(std::string_view class_name) {
  return std::ranges::any_of(formats::NamedValueClasses(), [class_name](std::string_view name) {
    return EqualsIgnoringAsciiCase(name, class_name);
  });
}

std::string_view NearestSettingsGroup(std::string_view class_name) {
  std::vector<std::string_view> names(formats::NamedValueClasses().begin(),
                                      formats::NamedValueClasses().end());
  for (const formats::SettingsGroup* const group : formats::SettingsGroups()) {
    names.push_back(group->class_name);
  }
  return text::FindNearest(class_name, names).word;
}

void CheckSettings(Reporter& reporter, const std::vector<SettingsChoice>& choices, bool are_all) {
  const std::vector<SettingsBlocks> files = FindSettingsBlocks(reporter.GetProject(), choices);
  ReportMissingBlocks(reporter, files, choices, are_all);
  for (const SettingsBlocks& file : files) {
    Block block(reporter, file.file);
    for (std::size_t i = 0; i < choices.size(); ++i) {
      const formats::SettingsGroup* const group = SettingsGroupNamed(choices[i].class_name);
      if (group) {
        block.CheckKeys(file.by_choice[i], *group, file.all);
      } else {
        block.CheckAnyKeys(file.by_choice[i], file.all);
      }
    }
  }
}

}  // namespace sab::check
