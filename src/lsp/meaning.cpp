#include "lsp/meaning.h"

#include <algorithm>
#include <cstdio>

#include "formats/manual.h"
#include "project/rule_words.h"
#include "text/ascii.h"
#include "text/numbers.h"
#include "xml/error.h"
#include "xml/path.h"

namespace sab::lsp {

using formats::Rule;
using formats::SettingsGroup;
using formats::Type;
using xml::kNoNode;
using xml::NodeIndex;

Meaning::Meaning(const View& view) : file_(*view.file) {
  if (!file_.HasElements() || file_.HasSchema()) return;
  if (view.application) FindNamedBlocks(view.application->Choices().settings);
  FindLikelyBlocks();
}

void Meaning::FindNamedBlocks(const std::vector<check::SettingsChoice>& choices) {
  xml::Paths paths(file_.Xml());
  for (const check::SettingsChoice& choice : choices) {
    const SettingsGroup* const group = check::SettingsGroupNamed(choice.class_name);
    if (!group || choice.node_path.empty()) continue;
    try {
      for (const NodeIndex node : paths.SelectAll(choice.node_path)) blocks_[node] = group;
    } catch (const xml::Error&) {  // which a check reports
    }
  }
}

void Meaning::FindLikelyBlocks() {
  const xml::Document& xml = file_.Xml();
  for (NodeIndex node = xml.Root(); node < xml.NodeCount(); ++node) {
    if (!xml.IsElement(node) || blocks_.contains(node)) continue;
    std::size_t children = 0;
    std::map<const SettingsGroup*, std::size_t> known;
    for (NodeIndex child = xml.FirstChildElement(node); child != kNoNode;
         child = xml.NextElement(child)) {
      ++children;
      for (const SettingsGroup* const group : formats::SettingsGroups()) {
        known[group] += std::ranges::count(group->keys, xml.NameOf(child), &Rule::name) > 0 ? 1 : 0;
      }
    }
    if (children < 2) continue;
    const auto best =
        std::ranges::max_element(known, {}, [](const auto& group) { return group.second; });
    if (best->second >= 2 && 2 * best->second > children) blocks_[node] = best->first;
  }
}

const SettingsGroup* Meaning::GroupOf(NodeIndex element) const {
  const auto found = blocks_.find(element);
  return found == blocks_.end() ? nullptr : found->second;
}

const Rule* Meaning::RuleOf(NodeIndex element) const {
  if (element == kNoNode) return nullptr;
  if (file_.HasSchema()) return file_.RuleOf(element);
  if (element == file_.Xml().Root()) return nullptr;
  const std::span<const Rule> around = ContentOf(file_.Xml().ParentOf(element));
  const auto found = std::ranges::find(around, file_.Xml().NameOf(element), &Rule::name);
  return found == around.end() ? nullptr : &*found;
}

std::span<const Rule> Meaning::ContentOf(NodeIndex element) const {
  if (element == kNoNode) return {};
  if (file_.HasSchema()) {
    if (element == file_.Xml().Root()) return file_.GetSchema().Form().content;
    const Rule* const rule = file_.RuleOf(element);
    return rule ? rule->Content() : std::span<const Rule>();
  }
  if (const SettingsGroup* const group = GroupOf(element)) return group->keys;
  if (element == file_.Xml().Root()) return {};
  const Rule* const rule = RuleOf(element);
  return rule ? rule->Content() : std::span<const Rule>();
}

std::string Meaning::PlacesOf(NodeIndex element) const {
  if (file_.HasSchema()) {
    const project::RuleId rule = file_.RuleIdOf(element);
    if (rule == project::kNoRule) return {};
    return project::PlacesOf(file_.GetSchema(), file_.GetSchema().HomeOf(rule));
  }
  const SettingsGroup* const group = GroupOf(file_.Xml().ParentOf(element));
  return group ? std::string(group->class_name) : std::string();
}

std::string DescriptionOf(const Rule& rule) {
  std::string text = "**" + std::string(rule.name) + "**: " + std::string(rule.help);
  const auto add = [&text](std::string_view name, const std::string& words) {
    if (!words.empty()) text += "\n- " + std::string(name) + ": " + words;
  };
  text += '\n';
  add("type", std::string(formats::WordsFor(rule.type)));
  add("need", project::NeedOf(rule));
  add("default", std::string(formats::DefaultOf(rule)));
  add("of several counts", project::WhichCounts(rule));
  if (rule.role == formats::Role::kDefines) {
    add("defines", project::WithArticle(formats::NameOf(rule.subject)));
  } else if (rule.role == formats::Role::kRefersTo) {
    add("names", project::WithArticle(formats::NameOf(rule.subject)));
  } else if (rule.role == formats::Role::kLeadsTo) {
    add("leads to", std::string(formats::DocumentOfKind(rule.leads_to).about));
  }
  return text;
}

std::string UnderstoodAs(const Rule& rule, std::string_view text) {
  const std::int32_t number = text::ParseInt(text);
  const auto truth = [](bool value) { return std::string(value ? "true" : "false"); };
  switch (rule.type) {
    case Type::kOne:
      return truth(text == "1");
    case Type::kNotZero:
      return truth(text != "0");
    case Type::kOneOrTrue:
      return truth(text == "1" || EqualsIgnoringAsciiCase(text, "true"));
    case Type::kTrue:
      return truth(EqualsIgnoringAsciiCase(text, "true"));
    case Type::kFlag:
      return number == -1 || number == 0 ? truth(number != 0) : std::to_string(number);
    case Type::kMinusOne:
      return truth(number == -1);
    case Type::kNonZero:
      return truth(number != 0);
    case Type::kInt16:
    case Type::kWideInt16:
      return std::to_string(static_cast<std::int16_t>(number));
    case Type::kUInt16:
      return std::to_string(static_cast<std::uint16_t>(number));
    case Type::kInt32:
      return std::to_string(number);
    case Type::kInt32OrMax:
      return text == "INT_MAX" ? "the greatest number" : std::to_string(number);
    case Type::kUInt32:
      return std::to_string(static_cast<std::uint32_t>(number));
    case Type::kColour: {
      const auto value = static_cast<std::uint32_t>(number);
      char words[80];
      std::snprintf(words, sizeof words, "0x%08X: red %u, green %u, blue %u", value, value & 0xFF,
                    (value >> 8) & 0xFF, (value >> 16) & 0xFF);
      return words;
    }
    default:
      return {};
  }
}

}  // namespace sab::lsp
