#include "lsp/features.h"
#include "lsp/identifiers.h"
#include "lsp/meaning.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using formats::Role;
using formats::Rule;

Json HoverOf(std::string text, const Range& range) {
  return {{"contents", {{"kind", "markdown"}, {"value", std::move(text)}}},
          {"range", ToJson(range)}};
}

std::string WordsForIdentifier(const View& view, const Named& named) {
  const std::vector<project::Occurrence> definitions = DefinitionsOf(view, named);
  std::string words;
  for (const project::Occurrence& definition : definitions) {
    words += words.empty() ? "" : "\n\n";
    if (named.subject == formats::Subject::kCommand) {
      words += CommandWords(view, definition);
      continue;
    }
    const project::File& file = view.project->At(definition.file);
    const xml::Place place = file.PlaceOf(file.ValueSpan(definition.identifier.node).from);
    words += "**" + named.text + "**: " + std::string(formats::NameOf(named.subject)) +
             "\n\n- defined: " + file.Path() + ":" + std::to_string(place.line);
  }
  if (!definitions.empty()) return words;
  const bool is_host_id = view.application->Choices().host_ids.Has(named.subject, named.text);
  return "**" + named.text + "**: a " + std::string(formats::NameOf(named.subject)) +
         (is_host_id ? " that the host defines" : " that no document of the application defines");
}

std::string WordsForPath(const View& view, xml::NodeIndex element) {
  for (const project::Link& link : view.project->Links()) {
    if (link.from != view.index || link.path.node != element) continue;
    return link.found.path + (link.to == project::kNoFile ? ": there is no such file" : "");
  }
  return {};
}

}  // namespace

Json Hover(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  if (!view.file->HasElements()) return nullptr;
  const std::size_t offset = context.workspace.OffsetIn(view, Member(params, {"position"}));
  const xml::NodeIndex element = ElementAt(*view.file, offset);
  if (element == xml::kNoNode) return nullptr;
  const Meaning meaning(view);
  const Rule* const rule = meaning.RuleOf(element);
  const project::Span start = StartNameOf(*view.file, element);
  const project::Span end = EndNameOf(*view.file, element);
  if (Contains(start, offset) || (Contains(end, offset) && end.from != end.to)) {
    const Range range = context.workspace.RangeIn(view, Contains(start, offset) ? start : end);
    if (rule) {
      const std::string places = meaning.PlacesOf(element);
      return HoverOf(DescriptionOf(*rule) + (places.empty() ? "" : "\n- in: " + places), range);
    }
    if (const formats::SettingsGroup* const group = meaning.GroupOf(element)) {
      return HoverOf(
          "**" + std::string(group->class_name) + "**: settings of " + std::string(group->about),
          range);
    }
    const bool is_root = element == view.file->Xml().Root() && view.file->HasSchema();
    if (!is_root) return nullptr;
    const formats::Document& form = view.file->GetSchema().Form();
    return HoverOf("**" + std::string(form.root) + "**: " + std::string(form.help), range);
  }
  if (!rule || rule->type == formats::Type::kNone || !view.file->HasText(element)) return nullptr;
  const project::Span value = view.file->ValueSpan(element);
  if (!Contains(value, offset)) return nullptr;
  const Range range = context.workspace.RangeIn(view, value);
  if (const std::optional<Named> named = IdentifierAt(view, offset)) {
    return HoverOf(WordsForIdentifier(view, *named), range);
  }
  std::string words = DescriptionOf(*rule);
  const std::string meant = rule->role == Role::kLeadsTo
                                ? WordsForPath(view, element)
                                : UnderstoodAs(*rule, view.file->TextOf(element));
  if (!meant.empty()) words += "\n- understood as: " + meant;
  return HoverOf(std::move(words), range);
}

}  // namespace sab::lsp
