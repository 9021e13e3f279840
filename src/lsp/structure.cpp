// What follows from the elements alone: folding, selection, paired names, links.

#include "lsp/features.h"
#include "lsp/meaning.h"
#include "lsp/syntax.h"
#include "lsp/uri.h"
#include "project/path_finder.h"

namespace sab::lsp {
namespace {

using project::Span;
using xml::kNoNode;
using xml::NodeIndex;
using xml::NodeType;

}  // namespace

Json FoldingRanges(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  Json ranges = Json::array();
  if (!view.file->HasElements()) return ranges;
  const xml::Document& xml = view.file->Xml();
  for (NodeIndex node = 1; node < xml.NodeCount(); ++node) {
    const bool is_comment = xml.TypeOf(node) == NodeType::kComment;
    if (!xml.IsElement(node) && !is_comment) continue;
    const Range range = context.workspace.RangeIn(view, SpanOf(*view.file, node));
    // The line of the end tag stays.
    const unsigned last = range.end.line - (is_comment || range.end.line == 0 ? 0 : 1);
    if (last <= range.start.line) continue;
    Json folding = {{"startLine", range.start.line}, {"endLine", last}};
    if (is_comment) folding["kind"] = "comment";
    ranges.push_back(std::move(folding));
  }
  return ranges;
}

Json SelectionRanges(Context& context, const Json& params) {
  constexpr std::size_t kMostLevels = 200;
  const View view = context.workspace.ViewOf(params);
  Json results = Json::array();
  const Json& positions = Member(params, {"positions"});
  if (!positions.is_array()) throw RequestError(kInvalidParams, "positions must be a list");
  for (const Json& position : positions) {
    const Position place = PositionFrom(position);
    Json selection = {{"range", ToJson(Range{place, place})}};
    if (view.file->HasElements()) {
      const std::size_t offset = context.workspace.OffsetIn(view, position);
      Json outer;
      const auto add = [&](Span span) {
        if (!Contains(span, offset)) return;
        Json range = ToJson(context.workspace.RangeIn(view, span));
        if (!outer.is_null() && outer["range"] == range) return;
        Json next = {{"range", std::move(range)}};
        if (!outer.is_null()) next["parent"] = std::move(outer);
        outer = std::move(next);
      };
      std::vector<NodeIndex> path = PathTo(*view.file, ElementAt(*view.file, offset));
      if (path.size() > kMostLevels) {
        path.erase(path.begin(), path.end() - static_cast<std::ptrdiff_t>(kMostLevels));
      }
      for (const NodeIndex element : path) {
        add(SpanOf(*view.file, element));
        add(ContentSpanOf(*view.file, element));
      }
      if (!path.empty()) {
        add(view.file->ValueSpan(path.back()));
        add(StartNameOf(*view.file, path.back()));
        add(EndNameOf(*view.file, path.back()));
      }
      if (!outer.is_null()) selection = std::move(outer);
    }
    results.push_back(std::move(selection));
  }
  return results;
}

Json LinkedEditing(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  if (!view.file->HasElements()) return nullptr;
  const std::size_t offset = context.workspace.OffsetIn(view, Member(params, {"position"}));
  const NodeIndex element = ElementAt(*view.file, offset);
  if (element == kNoNode) return nullptr;
  const Span start = StartNameOf(*view.file, element);
  const Span end = EndNameOf(*view.file, element);
  // A tag that the tolerant reading has put in is not in the text.
  const bool is_there =
      view.file->ToOriginal(end.to) - view.file->ToOriginal(end.from) == start.to - start.from;
  if (!is_there || (!Contains(start, offset) && !Contains(end, offset))) return nullptr;
  return {{"ranges", Json::array({ToJson(context.workspace.RangeIn(view, start)),
                                  ToJson(context.workspace.RangeIn(view, end))})}};
}

Json DocumentLinks(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  Json links = Json::array();
  if (!view.file->HasElements()) return links;
  project::PathFinder finder;
  const Meaning meaning(view);
  const xml::Document& xml = view.file->Xml();
  for (NodeIndex node = xml.Root(); node < xml.NodeCount(); ++node) {
    const formats::Rule* const rule = xml.IsElement(node) ? meaning.RuleOf(node) : nullptr;
    if (!rule) continue;
    const std::string text(view.file->TextOf(node));
    if (text.empty()) continue;
    std::string target;
    if (rule->type == formats::Type::kUrl) {
      if (text.starts_with("http://") || text.starts_with("https://")) target = text;
    } else if (rule->type == formats::Type::kPath || rule->type == formats::Type::kImage) {
      const project::PathFinder::Found found = finder.Find(view.file->Path(), text);
      std::error_code ignored;
      const bool is_file =
          found.exists && !std::filesystem::is_directory(project::PathOf(found.path), ignored);
      if (is_file) target = context.workspace.UriOf(found.path);
    }
    if (target.empty()) continue;
    links.push_back({{"range", ToJson(context.workspace.RangeIn(view, view.file->ValueSpan(node)))},
                     {"target", std::move(target)}});
  }
  return links;
}

}  // namespace sab::lsp
