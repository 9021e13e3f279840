#include <algorithm>

#include "lsp/features.h"
#include "lsp/identifiers.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using formats::Role;
using formats::Subject;

// Numbers of the legend.
enum TokenType { kFunction, kClass, kNamespace, kVariable, kEvent, kString };
enum TokenModifier { kDeclaration = 1, kDefaultLibrary = 2 };

TokenType TypeOf(Subject subject) {
  switch (subject) {
    case Subject::kCommand:
      return kFunction;
    case Subject::kApplication:
    case Subject::kTemplate:
    case Subject::kModule:
    case Subject::kEnvironment:
    case Subject::kCommandFile:
      return kNamespace;
    case Subject::kStandard:
    case Subject::kSymbol:
      return kClass;
    case Subject::kButton:
    case Subject::kMenu:
      return kEvent;
    default:
      return kVariable;
  }
}

}  // namespace

Json SemanticTokensLegend() {
  return {{"tokenTypes", {"function", "class", "namespace", "variable", "event", "string"}},
          {"tokenModifiers", {"declaration", "defaultLibrary"}}};
}

namespace {

// The tokens of some lines, or of all.
Json TokensWithin(Context& context, const Json& params, const Json& wanted) {
  const View view = context.workspace.ViewOf(params);
  Json data = Json::array();
  const Range limits = RangeFrom(wanted);
  Position last;
  for (const project::Identifier& identifier : view.file->Identifiers()) {
    if (identifier.text.empty()) continue;
    const Range range = context.workspace.RangeIn(view, view.file->ValueSpan(identifier.node));
    if (range.start.line != range.end.line || range.start.character >= range.end.character) {
      continue;  // a token is on one line
    }
    if (wanted.is_object() &&
        (range.start.line < limits.start.line || range.start.line > limits.end.line)) {
      continue;
    }
    const formats::Rule& rule = view.file->GetSchema().At(identifier.rule);
    const TokenType type = rule.role == Role::kLeadsTo ? kString : TypeOf(rule.subject);
    int modifiers = rule.role == Role::kDefines ? kDeclaration : 0;
    if (view.application->Choices().host_ids.Has(rule.subject, identifier.text)) {
      modifiers |= kDefaultLibrary;
    }
    const bool is_same_line = range.start.line == last.line;
    data.push_back(range.start.line - last.line);
    data.push_back(is_same_line ? range.start.character - last.character : range.start.character);
    data.push_back(range.end.character - range.start.character);
    data.push_back(static_cast<int>(type));
    data.push_back(modifiers);
    last = range.start;
  }
  return {{"data", std::move(data)}};
}

}  // namespace

Json SemanticTokens(Context& context, const Json& params) {
  return TokensWithin(context, params, nullptr);
}

Json SemanticTokensOfRange(Context& context, const Json& params) {
  return TokensWithin(context, params, Member(params, {"range"}));
}

// The name that a user sees after the identifier of a command.
Json InlayHints(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  Json hints = Json::array();
  if (!view.file->HasSchema()) return hints;
  const Range limits = RangeFrom(Member(params, {"range"}));
  std::map<std::string_view, std::string_view> names;
  for (const project::Occurrence& definition : DefinitionsFor(view, Subject::kCommand)) {
    names.try_emplace(definition.identifier.text, CommandNameOf(view, definition));
  }
  for (const project::Identifier& identifier : view.file->Identifiers()) {
    const formats::Rule& rule = view.file->GetSchema().At(identifier.rule);
    if (rule.role != Role::kRefersTo || rule.subject != Subject::kCommand) continue;
    const auto name = names.find(identifier.text);
    if (name == names.end() || name->second.empty()) continue;
    const Position place =
        context.workspace.RangeIn(view, view.file->ValueSpan(identifier.node)).end;
    if (place.line < limits.start.line || place.line > limits.end.line) continue;
    hints.push_back(
        {{"position", ToJson(place)}, {"label", name->second}, {"kind", 1}, {"paddingLeft", true}});
  }
  return hints;
}

}  // namespace sab::lsp
