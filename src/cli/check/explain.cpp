#include "cli/check/explain.h"

#include <algorithm>
#include <iostream>
#include <span>
#include <string_view>

#include "cli/check/check_options.h"
#include "cli/check/document_kinds.h"
#include "cli/display_text.h"
#include "cli/suggestion.h"
#include "cli/tree_sink.h"
#include "formats/documents.h"
#include "formats/manual.h"
#include "project/rule_words.h"
#include "project/schema.h"
#include "project/xml_schema.h"
#include "text/ascii.h"

namespace sabxml::cli {
namespace {

namespace formats = sab::formats;
namespace project = sab::project;

// Settings are no kind of document; their keys are explained like elements.
constexpr std::string_view kSettingsKind = "settings";

// Every element of a name: lines for people, or an array.
class Explanations {
 public:
  void Begin(const std::string& element, std::string_view help) {
    if (!text_.empty()) text_ += '\n';
    text_ += element + ": " + std::string(help) + '\n';
    all_.push_back({{"element", element}, {"help", help}});
  }
  void Add(std::string_view name, std::string_view line) {
    if (line.empty()) return;
    text_ += "  " + Padded(name, 10) + std::string(line) + '\n';
    all_.back()[std::string(name)] = line;
  }

  bool IsEmpty() const { return text_.empty(); }
  void Print(bool as_json) const { std::cout << (as_json ? all_.dump(2) + '\n' : text_); }

 private:
  std::string text_;
  Json all_ = Json::array();
};

void ExplainRule(const formats::Rule& rule, const std::string& places, std::string_view about,
                 Explanations& found) {
  found.Begin(std::string(rule.name), rule.help);
  found.Add("in", places + " (" + std::string(about) + ")");
  found.Add("type", formats::WordsFor(rule.type));
  found.Add("need", project::NeedOf(rule));
  found.Add("default", DefaultOf(rule));
  found.Add("counts", project::WhichCounts(rule));
  std::string content;
  for (const formats::Rule& inner : rule.Content()) {
    if (inner.name == formats::kAnyName) continue;
    content += (content.empty() ? "" : ", ") + std::string(inner.name);
  }
  found.Add("holds", content);
}

// Keys of settings, and what is in those that are structures.
void ExplainKeys(const std::string& element, std::span<const formats::Rule> keys,
                 std::string_view place, Explanations& found, std::vector<std::string>& names) {
  for (const formats::Rule& rule : keys) {
    names.emplace_back(rule.name);
    if (rule.name == element) ExplainRule(rule, std::string(place), "settings", found);
    ExplainKeys(element, rule.Content(), rule.name, found, names);
  }
}

const formats::Document& Sections() {
  return formats::DocumentOfKind(formats::Kind::kTextTemplate);
}

void ExplainElementOf(const formats::Document& document, const std::string& element,
                      Explanations& found, std::vector<std::string>& names) {
  const project::Schema& schema = project::Schema::Of(document.kind);
  names.emplace_back(document.root);
  if (element == document.root) {
    found.Begin(element, document.help);
    found.Add("is", "the document element of a file of the kind " + std::string(document.about));
  }
  for (project::RuleId id = 1; id < schema.RuleCount(); ++id) {
    const formats::Rule& rule = schema.At(id);
    names.emplace_back(rule.name);
    if (rule.name != element) continue;
    ExplainRule(rule, project::PlacesOf(schema, schema.HomeOf(id)), document.about, found);
  }
}

// Adds what a kind has of an element, and the names of all elements that it knows.
void ExplainIn(const std::string& kind, const std::string& element, Explanations& found,
               std::vector<std::string>& names) {
  if (const formats::Document* const document = project::DocumentNamed(kind))
    return ExplainElementOf(*document, element, found, names);
  if (kind == kSettingsKind) {
    for (const formats::SettingsGroup* const group : formats::SettingsGroups())
      ExplainKeys(element, group->keys, group->class_name, found, names);
    return;
  }
  for (const formats::Rule& section : Sections().content) {
    names.emplace_back(section.name);
    if (section.name != element) continue;
    found.Begin(element, section.help);
    found.Add("is", "a section of a " + std::string(Sections().about));
  }
}

std::string CheckedExplainedKind(const std::string& name) {
  if (const formats::Document* const document = project::DocumentNamed(name))
    return project::ShortNameOf(*document);
  Explanations found;
  std::vector<std::string> names;
  for (const std::string& kind : ExplainedKinds()) {
    if (sab::EqualsIgnoringAsciiCase(kind, name)) return kind;
    ExplainIn(kind, name, found, names);
  }
  if (found.IsEmpty()) RefuseKind(name, ExplainedKinds());
  throw Misunderstood(name +
                      " is no kind of document, but has an explanation of its own; try "
                      "sabxml explain " +
                      name);
}

[[noreturn]] void RefuseElement(const std::string& element, const std::string& kind,
                                const std::vector<std::string>& names_of_kind) {
  std::vector<std::string> kinds;  // that have it
  std::vector<std::string> names;
  for (const std::string& other : ExplainedKinds()) {
    Explanations found;
    ExplainIn(other, element, found, names);
    if (!found.IsEmpty()) kinds.push_back(other);
  }
  if (kinds.empty()) {
    std::string meant = DidYouMean(element, names_of_kind);
    if (meant.empty()) meant = DidYouMean(element, names);
    throw Misunderstood("there is no element, key or section " + element + meant);
  }
  throw Misunderstood("no " + element + " is known in files of the kind " + kind +
                      ", but in those of " + Listed(kinds) + "; try sabxml explain " + element +
                      " " + kinds.front());
}

}  // namespace

std::vector<std::string> ExplainedKinds() {
  std::vector<std::string> kinds = KindsWithElements();
  kinds.emplace_back(kSettingsKind);
  kinds.push_back(project::ShortNameOf(Sections()));
  return kinds;
}

std::vector<std::string> ExplainedNames() {
  std::vector<std::string> names;
  Explanations none;
  for (const std::string& kind : ExplainedKinds()) ExplainIn(kind, {}, none, names);
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  std::erase(names, formats::kAnyName);
  return names;
}

void ExplainElement(const std::string& element, const std::string& kind, bool as_json) {
  const std::vector<std::string> kinds =
      kind.empty() ? ExplainedKinds() : std::vector{CheckedExplainedKind(kind)};
  std::vector<std::string> names;
  Explanations found;
  for (const std::string& one : kinds) ExplainIn(one, element, found, names);
  if (found.IsEmpty()) RefuseElement(element, kinds.front(), names);
  found.Print(as_json);
}

}  // namespace sabxml::cli
