#include <algorithm>

#include "lsp/features.h"
#include "lsp/meaning.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using project::Span;
using xml::kNoNode;
using xml::NodeIndex;
using xml::NodeType;

// Gives each element a line of its own, indented by its level. White space between tags is all that
// changes; elements that have a text stay as they are.
class Formatter {
 public:
  Formatter(const View& view, std::string step)
      : view_(view),
        xml_(view.file->Xml()),
        text_(view.file->Text()),
        meaning_(view),
        line_end_(LineEndOf(text_)),
        step_(std::move(step)) {}

  struct Edit {
    Span span;
    std::string text;
  };

  std::vector<Edit> Edits() {
    // Where the next gap begins, and how deep it is.
    std::size_t gap = xml_.At(xml_.Root()).start;
    std::vector<NodeIndex> open;
    for (NodeIndex node = xml_.Root(); node < xml_.NodeCount();) {
      gap = CloseUpTo(xml_.ParentOf(node), open, gap);
      if (open.empty() && node != xml_.Root()) break;  // what follows the document element
      AddGap(gap, xml_.At(node).start - OpeningSizeOf(node), open.size(),
             xml_.TypeOf(node) == NodeType::kComment);
      if (xml_.IsElement(node) && HasLines(node)) {
        open.push_back(node);
        gap = ContentSpanOf(*view_.file, node).from;
        ++node;
      } else {
        gap = xml_.EndOfMarkup(node);
        node = xml_.EndOf(node);
      }
    }
    CloseUpTo(kNoNode, open, gap);
    return std::move(edits_);
  }

 private:
  // The start of a node that is no element is that of its content.
  std::size_t OpeningSizeOf(NodeIndex node) const {
    if (xml_.IsElement(node)) return 0;
    const std::size_t start = xml_.At(node).start;
    return start - text_.rfind('<', start - 1);
  }

  // Whether the content of an element is elements and comments alone.
  bool HasLines(NodeIndex element) const {
    const formats::Rule* const rule = meaning_.RuleOf(element);
    const bool is_value = rule && rule->type != formats::Type::kNone;
    if (is_value || (xml_.At(element).flags & (xml::kPreservesSpace | xml::kHasOnlyText)) != 0) {
      return false;
    }
    bool has_element = false;
    for (NodeIndex child = xml_.FirstChild(element); child != kNoNode;
         child = xml_.NextSibling(child)) {
      const NodeType type = xml_.TypeOf(child);
      if (type == NodeType::kText || type == NodeType::kCData) return false;
      has_element = has_element || type == NodeType::kElement;
    }
    return has_element;
  }

  std::size_t CloseUpTo(NodeIndex parent, std::vector<NodeIndex>& open, std::size_t gap) {
    while (!open.empty() && open.back() != parent) {
      const NodeIndex element = open.back();
      open.pop_back();
      AddGap(gap, xml_.At(element).end, open.size(), false);
      gap = xml_.EndOfMarkup(element);
    }
    return gap;
  }

  void AddGap(std::size_t from, std::size_t to, std::size_t level, bool is_comment) {
    if (to <= from && level == 0) return;
    const std::string_view gap = text_.substr(from, to - from);
    if (gap.find_first_not_of(" \t\r\n") != gap.npos) return;
    const auto lines = std::ranges::count(gap, '\n');
    if (is_comment && lines == 0) return;  // it is about what is before it on its line
    std::string wanted;
    for (auto i = std::max<std::ptrdiff_t>(lines, 1); i > 0; --i) wanted += line_end_;
    // What is nested more deeply was made by a program, and would be mostly white space.
    constexpr std::size_t kMostLevels = 200;
    for (level = std::min(level, kMostLevels); level > 0; --level) wanted += step_;
    if (wanted != gap) edits_.push_back({{from, to}, std::move(wanted)});
  }

  const View& view_;
  const xml::Document& xml_;
  const std::string_view text_;
  const Meaning meaning_;
  const std::string_view line_end_;
  const std::string step_;
  std::vector<Edit> edits_;
};

Json FormatWithin(Context& context, const Json& params, const Json& range) {
  const View view = context.workspace.ViewOf(params);
  // Half a document would be taken for another one.
  if (!view.file->HasElements() || view.file->Failure()) return Json::array();
  const xml::Document& xml = view.file->Xml();
  std::string step(IndentationStepOf(*view.file));
  const NodeIndex child = xml.FirstChildElement(xml.Root());
  const bool has_lines =
      child != kNoNode && !IndentationAt(xml.TextBytes(), xml.At(child).start).empty();
  if (!has_lines) {
    const Json& spaces = Member(params, {"options", "insertSpaces"});
    const unsigned size = Number(Member(params, {"options", "tabSize"}));
    if (spaces.is_boolean() && !spaces.get<bool>()) {
      step = "\t";
    } else if (size > 0 && size <= 16) {
      step.assign(size, ' ');
    }
  }
  const Range limits = RangeFrom(range);
  Json edits = Json::array();
  for (const Formatter::Edit& edit : Formatter(view, std::move(step)).Edits()) {
    context.stop_if_cancelled();
    const Range place = context.workspace.RangeIn(view, edit.span);
    if (range.is_object() &&
        (place.end.line < limits.start.line || place.end.line > limits.end.line)) {
      continue;
    }
    edits.push_back({{"range", ToJson(place)}, {"newText", edit.text}});
  }
  return edits;
}

}  // namespace

Json Format(Context& context, const Json& params) { return FormatWithin(context, params, nullptr); }

Json FormatRange(Context& context, const Json& params) {
  return FormatWithin(context, params, Member(params, {"range"}));
}

}  // namespace sab::lsp
