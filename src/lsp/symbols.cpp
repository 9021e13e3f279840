#include <algorithm>

#include "lsp/features.h"
#include "lsp/syntax.h"
#include "text/ascii.h"

namespace sab::lsp {
namespace {

using formats::Role;
using formats::Subject;
using project::File;
using project::FileIndex;
using xml::kNoNode;
using xml::NodeIndex;

enum SymbolKind {
  kFileSymbol = 1,
  kModuleSymbol = 2,
  kNamespaceSymbol = 3,
  kPackageSymbol = 4,
  kClassSymbol = 5,
  kFunctionSymbol = 12,
  kArraySymbol = 18,
  kObjectSymbol = 19,
  kKeySymbol = 20,
  kEventSymbol = 24,
};

SymbolKind KindOf(Subject subject) {
  switch (subject) {
    case Subject::kCommand:
      return kFunctionSymbol;
    case Subject::kModule:
      return kModuleSymbol;
    case Subject::kApplication:
    case Subject::kTemplate:
      return kPackageSymbol;
    case Subject::kEnvironment:
    case Subject::kCommandFile:
      return kNamespaceSymbol;
    case Subject::kButton:
    case Subject::kMenu:
      return kEventSymbol;
    case Subject::kKeyGroup:
      return kKeySymbol;
    case Subject::kStandard:
    case Subject::kSymbol:
      return kClassSymbol;
    default:
      return kObjectSymbol;
  }
}

// The identifier that an element defines by one of its own.
std::pair<std::string_view, Subject> IdentityOf(const File& file, NodeIndex element) {
  const xml::Document& xml = file.Xml();
  std::pair<std::string_view, Subject> named;
  for (NodeIndex child = xml.FirstChildElement(element); child != kNoNode;
       child = xml.NextElement(child)) {
    const formats::Rule* const rule = file.HasSchema() ? file.RuleOf(child) : nullptr;
    if (!rule || rule->type == formats::Type::kNone) continue;
    const bool is_main = rule->role == Role::kDefines;
    const bool is_next = rule->name == "Command" || rule->role == Role::kLeadsTo;
    if (is_main || (is_next && named.first.empty())) {
      named = {file.TextOf(child), is_main ? rule->subject : Subject::kNone};
    }
    if (is_main) break;
  }
  return named;
}

Json SymbolOf(Context& context, const View& view, NodeIndex element) {
  const File& file = *view.file;
  const auto [id, subject] = IdentityOf(file, element);
  const std::string tag(file.Xml().LocalNameOf(element));
  return {{"name", id.empty() ? tag : std::string(id)},
          {"detail", id.empty() ? "" : tag},
          {"kind", subject == Subject::kNone ? static_cast<int>(kArraySymbol)
                                             : static_cast<int>(KindOf(subject))},
          {"range", ToJson(context.workspace.RangeIn(view, SpanOf(file, element)))},
          {"selectionRange", ToJson(context.workspace.RangeIn(view, StartNameOf(file, element)))}};
}

// Elements that have elements are symbols; so deep a document can be that nothing here nests.
Json SymbolTree(Context& context, const View& view) {
  const xml::Document& xml = view.file->Xml();
  constexpr std::size_t kMostLevels = 100;
  struct Level {
    NodeIndex end;
    Json symbol;
  };
  std::vector<Level> open;
  Json roots = Json::array();
  const auto close = [&](NodeIndex node) {
    while (!open.empty() && node >= open.back().end) {
      Json symbol = std::move(open.back().symbol);
      open.pop_back();
      Json& list = open.empty() ? roots : open.back().symbol["children"];
      if (!list.is_array()) list = Json::array();
      list.push_back(std::move(symbol));
    }
  };
  for (NodeIndex node = xml.Root(); node < xml.NodeCount(); ++node) {
    if (!xml.IsElement(node) || xml.FirstChildElement(node) == kNoNode) continue;
    close(node);
    if (open.size() >= kMostLevels) continue;
    open.push_back({xml.EndOf(node), SymbolOf(context, view, node)});
  }
  close(xml.NodeCount());
  return roots;
}

void Flatten(const Json& symbols, const std::string& uri, const std::string& around, Json& flat) {
  for (const Json& symbol : symbols) {
    const std::string name = symbol["name"];
    Json one = {{"name", name},
                {"kind", symbol["kind"]},
                {"location", {{"uri", uri}, {"range", symbol["range"]}}}};
    if (!around.empty()) one["containerName"] = around;
    flat.push_back(std::move(one));
    if (symbol.contains("children")) Flatten(symbol["children"], uri, name, flat);
  }
}

// Whether the letters of a query are in a name in this order.
bool Matches(std::string_view name, std::string_view query) {
  std::size_t at = 0;
  for (const char c : name) {
    if (at < query.size() && ToLowerAscii(c) == ToLowerAscii(query[at])) ++at;
  }
  return at == query.size();
}

}  // namespace

Json DocumentSymbols(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  if (!view.file->HasElements()) return Json::array();
  Json tree = SymbolTree(context, view);
  if (context.client.has_symbol_trees) return tree;
  Json flat = Json::array();
  Flatten(tree, view.document->Uri(), "", flat);
  return flat;
}

Json WorkspaceSymbols(Context& context, const Json& params) {
  constexpr std::size_t kMost = 1000;
  const std::string query = NeededText(params, {"query"});
  Json symbols = Json::array();
  for (Application* const application : context.workspace.Applications()) {
    const project::Project& project = application->Tolerant();
    for (FileIndex i = 0; i < project.FileCount(); ++i) {
      context.stop_if_cancelled();
      const File& file = project.At(i);
      for (const project::Identifier& identifier : file.Identifiers()) {
        const formats::Rule& rule = file.GetSchema().At(identifier.rule);
        if (rule.role != Role::kDefines || identifier.text.empty()) continue;
        if (!Matches(identifier.text, query) || symbols.size() >= kMost) continue;
        symbols.push_back({{"name", identifier.text},
                           {"kind", static_cast<int>(KindOf(rule.subject))},
                           {"containerName", formats::NameOf(rule.subject)},
                           {"location", context.workspace.LocationOf(
                                            project, i, file.ValueSpan(identifier.node))}});
      }
    }
  }
  return symbols;
}

}  // namespace sab::lsp
