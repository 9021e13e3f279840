#include "xml/edit.h"

#include <algorithm>

#include "xml/text.h"

namespace sab::xml {

NewElement& Editor::Append(NodeIndex parent, std::string_view name, std::u16string_view text) {
  return added_[parent].emplace_back(name, text);
}

void Editor::SetText(NodeIndex element, std::u16string_view text) { texts_[element] = text; }

void Editor::Remove(NodeIndex element) { removed_.push_back(element); }

bool Editor::IsInsideRemoved(NodeIndex node) const {
  return std::any_of(removed_.begin(), removed_.end(), [&](NodeIndex removed) {
    return removed < node && node < document_.EndOf(removed);
  });
}

bool Editor::IndentationOf(NodeIndex node, std::string_view& indentation) const {
  const std::string_view text = document_.TextBytes();
  const std::size_t start = document_.At(node).start;
  std::size_t line = start;
  while (line > 0 && (text[line - 1] == ' ' || text[line - 1] == '\t')) --line;
  indentation = text.substr(line, start - line);
  // A document of one line has no indentation, wherever it starts.
  return line > 0 ? text[line - 1] == '\n' || text[line - 1] == '\r' : text.find('\n') != text.npos;
}

std::string Editor::LineEnd() const {
  const std::string_view text = document_.TextBytes();
  const std::size_t end = text.find('\n');
  return end != text.npos && end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

// What the first indented child of the document element adds to it.
std::string Editor::IndentationStep() const {
  std::string_view outer;
  std::string_view inner;
  const NodeIndex child = document_.FirstChildElement(document_.Root());
  if (child != kNoNode && IndentationOf(document_.Root(), outer) && IndentationOf(child, inner) &&
      inner.size() > outer.size() && inner.starts_with(outer)) {
    return std::string(inner.substr(outer.size()));
  }
  return "  ";
}

// Without a line to start, everything stands in line.
void Editor::Write(const NewElement& element, const std::string* line_start,
                   const std::string& step, std::string& out) const {
  if (line_start) out += *line_start;
  out += '<' + element.name_;
  if (element.children_.empty() && element.text_.empty()) {
    out += "/>";
    return;
  }
  out += '>' + EscapedText(element.text_);
  if (!element.children_.empty()) {
    const std::string deeper = line_start ? *line_start + step : std::string();
    for (const NewElement& child : element.children_) {
      Write(child, line_start ? &deeper : nullptr, step, out);
    }
    if (line_start) out += *line_start;
  }
  out += "</" + element.name_ + '>';
}

// <name a="1" /> becomes <name a="1">; from is where the tag's end starts.
std::string Editor::OpenedTag(NodeIndex element, std::size_t& from) const {
  const std::string_view text = document_.TextBytes();
  from = document_.At(element).end - 2;
  while (text[from - 1] == ' ' || text[from - 1] == '\t') --from;
  return ">";
}

Editor::Splice Editor::SpliceForAdded(NodeIndex parent, const std::deque<NewElement>& added) const {
  const Node& node = document_.At(parent);
  const bool is_empty_tag = (node.flags & kIsEmptyTag) != 0;
  const std::string end_tag = "</" + std::string(document_.NameOf(parent)) + '>';
  const std::string step = IndentationStep();
  NodeIndex last_child = kNoNode;
  bool has_text = (node.flags & (kHasOnlyText | kPreservesSpace)) != 0;
  for (NodeIndex child = document_.FirstChild(parent); child != kNoNode;
       child = document_.NextSibling(child)) {
    const NodeType type = document_.TypeOf(child);
    has_text = has_text || type == NodeType::kText || type == NodeType::kCData;
    if (document_.IsElement(child)) last_child = child;
  }

  Splice splice{document_.ElementEnd(parent), document_.ElementEnd(parent), {}};
  std::string_view indentation;
  std::string line_start;
  const std::string* lines = nullptr;
  const std::string_view text = document_.TextBytes();
  if (is_empty_tag) {
    splice.text = OpenedTag(parent, splice.from);
  } else {
    splice.from = splice.to = node.end;
  }
  if (has_text) {
    // White space between the pieces would become part of the text.
  } else if (last_child != kNoNode) {
    if (!is_empty_tag && IndentationOf(last_child, indentation)) {
      // Behind the last child, or behind what else stands on its line.
      splice.from = document_.ElementEnd(last_child);
      for (NodeIndex after = document_.NextSibling(last_child); after != kNoNode;
           after = document_.NextSibling(after)) {
        const Node& other = document_.At(after);
        splice.from = other.end + (other.type == NodeType::kComment ? 3U : 2U);
      }
      splice.to = splice.from;
      line_start = LineEnd() + std::string(indentation);
      lines = &line_start;
    }
  } else if (IndentationOf(parent, indentation)) {
    line_start = LineEnd() + std::string(indentation) + step;
    lines = &line_start;
    if (!is_empty_tag) {
      // Space that stands there already stays behind the new elements.
      std::size_t from = node.end;
      while (IsTrimmed(static_cast<unsigned char>(text[from - 1]))) --from;
      splice.from = splice.to = from;
    }
  }
  for (const NewElement& element : added) Write(element, lines, step, splice.text);
  const bool ends_line =
      text.substr(splice.to, node.end - std::min<std::size_t>(splice.to, node.end)).find('\n') !=
      text.npos;
  if (lines && last_child == kNoNode && (is_empty_tag || !ends_line)) {
    splice.text += LineEnd() + std::string(indentation);
  }
  if (is_empty_tag) splice.text += end_tag;
  return splice;
}

Editor::Splice Editor::SpliceForText(NodeIndex element, const std::string& text) const {
  const Node& node = document_.At(element);
  if ((node.flags & kIsEmptyTag) == 0) return {document_.ContentStart(element), node.end, text};
  Splice splice{0, node.end, {}};
  splice.text =
      OpenedTag(element, splice.from) + text + "</" + std::string(document_.NameOf(element)) + '>';
  return splice;
}

Editor::Splice Editor::SpliceForRemoval(NodeIndex element) const {
  const std::string_view text = document_.TextBytes();
  std::string_view indentation;
  Splice splice{document_.At(element).start, document_.ElementEnd(element), {}};
  std::size_t line_end = splice.to;
  while (line_end < text.size() && (text[line_end] == ' ' || text[line_end] == '\t')) ++line_end;
  if (line_end < text.size() && text[line_end] == '\r') ++line_end;
  if (IndentationOf(element, indentation) && line_end < text.size() && text[line_end] == '\n') {
    splice.from -= indentation.size();
    splice.to = line_end + 1;
  }
  return splice;
}

std::string Editor::Serialise() const {
  std::vector<Splice> splices;
  for (const NodeIndex element : removed_) {
    if (!IsInsideRemoved(element)) splices.push_back(SpliceForRemoval(element));
  }
  const auto is_removed = [this](NodeIndex element) {
    return std::find(removed_.begin(), removed_.end(), element) != removed_.end() ||
           IsInsideRemoved(element);
  };
  for (const auto& [element, text] : texts_) {
    if (!is_removed(element)) splices.push_back(SpliceForText(element, EscapedText(text)));
  }
  for (const auto& [parent, added] : added_) {
    if (!is_removed(parent)) splices.push_back(SpliceForAdded(parent, added));
  }
  std::sort(splices.begin(), splices.end(),
            [](const Splice& a, const Splice& b) { return a.from < b.from; });

  const std::string_view bytes = document_.Bytes();
  const Encoding& encoding = document_.GetEncoding();
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8 + 64);
  std::size_t copied = 0;
  std::size_t text_done = 0;
  for (const Splice& splice : splices) {
    if (splice.from < text_done) continue;  // inside a content that was replaced as a whole
    const std::size_t from = encoding.OriginalOffset(bytes, document_.TextBytes(), splice.from);
    out.append(bytes.substr(copied, from - copied));
    out += encoding.Encode(splice.text);
    copied = splice.to == splice.from
                 ? from
                 : encoding.OriginalOffset(bytes, document_.TextBytes(), splice.to);
    text_done = splice.to;
  }
  out.append(bytes.substr(copied));
  return out;
}

}  // namespace sab::xml
