#include "xml/edit.h"

#include <algorithm>

#include "xml/error.h"
#include "xml/text.h"

namespace sab::xml {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

void AppendEndTag(std::string_view name, std::string& out) {
  out += "</";
  out += name;
  out += '>';
}

}  // namespace

NewElement& Editor::Append(NodeIndex parent, std::string_view name, std::u16string_view text) {
  return changes_[parent].added.emplace_back(name, text);
}

void Editor::SetText(NodeIndex element, std::u16string_view text) { changes_[element].text = text; }

void Editor::Rename(NodeIndex element, std::string_view name) { changes_[element].name = name; }

void Editor::Remove(NodeIndex element) { changes_[element].is_removed = true; }

std::optional<std::string_view> Editor::IndentationOf(NodeIndex node) const {
  const std::string_view text = document_.TextBytes();
  const std::size_t start = document_.At(node).start;
  std::size_t line = start;
  while (line > 0 && IsBlank(text[line - 1])) --line;
  // A document of one line has no indentation, wherever it starts.
  const bool starts_line =
      line > 0 ? text[line - 1] == '\n' || text[line - 1] == '\r' : text.find('\n') != text.npos;
  if (!starts_line) return std::nullopt;
  return text.substr(line, start - line);
}

std::string Editor::LineEnd() const {
  const std::string_view text = document_.TextBytes();
  const std::size_t end = text.find('\n');
  return end != text.npos && end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

// What the first indented child of the document element adds to it.
std::string Editor::IndentationStep() const {
  const NodeIndex child = document_.FirstChildElement(document_.Root());
  if (child != kNoNode) {
    const auto outer = IndentationOf(document_.Root());
    const auto inner = IndentationOf(child);
    if (outer && inner && inner->size() > outer->size() && inner->starts_with(*outer)) {
      return std::string(inner->substr(outer->size()));
    }
  }
  return "  ";
}

// New elements are in no namespace, which is how their readers look for them.
std::string_view Editor::AttributesOfAdded(NodeIndex parent) const {
  for (; parent != kNoNode && document_.IsInNamespace(parent);
       parent = document_.ParentOf(parent)) {
    if (const auto name = document_.AttributeOf(parent, "xmlns"))
      return name->empty() ? "" : " xmlns=\"\"";
  }
  return {};  // nor has an element in no namespace a default namespace above it
}

void Editor::Write(const NewElement& element, const Layout& layout, std::string_view attributes,
                   std::string& out) const {
  if (!document_.GetEncoding().CanEncode(element.name_)) {
    throw Error("the name " + element.name_ + " cannot be written in the file's encoding");
  }
  if (layout.has_lines) out += layout.line_start;
  out += '<';
  out += element.name_;
  out += attributes;
  if (element.children_.empty() && element.text_.empty()) {
    out += "/>";
    return;
  }
  out += '>';
  AppendEscaped(element.text_, out);
  // White space between a text and elements would become part of the text.
  const bool has_lines = layout.has_lines && element.text_.empty() && !element.children_.empty();
  const Layout deeper = has_lines ? layout.Deeper() : Layout();
  for (const NewElement& child : element.children_) Write(child, deeper, {}, out);
  if (has_lines) out += layout.line_start;
  AppendEndTag(element.name_, out);
}

Editor::Splice Editor::SpliceForAdded(NodeIndex parent, const std::list<NewElement>& added) const {
  const std::string_view text = document_.TextBytes();
  const Node& node = document_.At(parent);
  NodeIndex last = kNoNode;
  NodeIndex last_element = kNoNode;
  bool has_text = (node.flags & (kHasOnlyText | kPreservesSpace)) != 0;
  for (NodeIndex child = document_.FirstChild(parent); child != kNoNode;
       child = document_.NextSibling(child)) {
    const NodeType type = document_.TypeOf(child);
    has_text = has_text || type == NodeType::kText || type == NodeType::kCData;
    last = child;
    if (document_.IsElement(child)) last_element = child;
  }

  Splice splice{node.end, node.end, {}};
  Layout layout;
  std::string closing_line;  // where the end tag has none of its own
  if (has_text) {
    // White space between the pieces would become part of the text.
  } else if (last_element != kNoNode) {
    if (const auto indentation = IndentationOf(last_element)) {
      layout = {true, LineEnd() + std::string(*indentation), IndentationStep()};
      splice.from = splice.to = document_.EndOfMarkup(last);
    }
  } else if (const auto indentation = IndentationOf(parent)) {
    const std::string line_start = LineEnd() + std::string(*indentation);
    layout = {true, line_start + IndentationStep(), IndentationStep()};
    // Existing space stays after the new elements.
    const bool is_empty_tag = (node.flags & kIsEmptyTag) != 0;
    if (!is_empty_tag) {
      while (IsTrimmed(static_cast<unsigned char>(text[splice.from - 1]))) --splice.from;
    }
    const std::string_view space = text.substr(splice.from, splice.to - splice.from);
    if (space.find('\n') == space.npos) closing_line = line_start;
    splice.to = splice.from;
  }
  const std::string_view attributes = AttributesOfAdded(parent);
  for (const NewElement& element : added) Write(element, layout, attributes, splice.text);
  splice.text += closing_line;
  return splice;
}

Editor::Splice Editor::SpliceForContent(NodeIndex element, const Change& change) const {
  if (!change.text) return SpliceForAdded(element, change.added);
  const Node& node = document_.At(element);
  const bool is_empty_tag = (node.flags & kIsEmptyTag) != 0;
  Splice splice{is_empty_tag ? node.end : document_.ContentStart(element), node.end, {}};
  AppendEscaped(*change.text, splice.text);
  const std::string_view attributes = AttributesOfAdded(element);
  for (const NewElement& added : change.added) Write(added, {}, attributes, splice.text);
  return splice;
}

Editor::Splice Editor::SpliceForRemoval(NodeIndex element) const {
  if (element == document_.Root()) throw Error("the document element cannot be removed");
  const std::string_view text = document_.TextBytes();
  Splice splice{document_.At(element).start, document_.EndOfMarkup(element), {}};
  const auto indentation = IndentationOf(element);
  std::size_t line_end = splice.to;
  while (line_end < text.size() && IsBlank(text[line_end])) ++line_end;
  const bool ends_line =
      text.substr(line_end).starts_with('\n') || text.substr(line_end).starts_with("\r\n");
  if (!indentation || !ends_line) return splice;
  // The line goes with the line end before it, so that what is added after it starts a line.
  splice.to = line_end;
  splice.from -= indentation->size();
  if (splice.from > 0 && text[splice.from - 1] == '\n') --splice.from;
  if (splice.from > 0 && text[splice.from - 1] == '\r') --splice.from;
  return splice;
}

Editor::Splice Editor::SpliceFor(NodeIndex element, const Change& change) const {
  if (change.is_removed) return SpliceForRemoval(element);
  Splice splice = SpliceForContent(element, change);
  const Node& node = document_.At(element);
  if ((node.flags & kIsEmptyTag) == 0) return splice;
  // <name a="1" /> becomes <name a="1">...</name>.
  const std::string_view text = document_.TextBytes();
  splice.from = node.end - 2;
  while (IsTrimmed(static_cast<unsigned char>(text[splice.from - 1]))) --splice.from;
  splice.to = node.end;
  splice.text.insert(0, 1, '>');
  AppendEndTag(document_.NameOf(element), splice.text);
  return splice;
}

void Editor::AppendRenaming(NodeIndex element, std::string_view name,
                            std::vector<Splice>& splices) const {
  if (!document_.GetEncoding().CanEncode(name)) {
    throw Error("the name " + std::string(name) + " cannot be written in the file's encoding");
  }
  const Node& node = document_.At(element);
  const auto append = [&](std::size_t start) {
    splices.push_back({start + node.prefix_length, start + node.name_length, std::string(name)});
  };
  append(node.start + std::size_t{1});
  if ((node.flags & kIsEmptyTag) == 0) append(node.end + std::size_t{2});
}

std::string Editor::Serialise() const {
  std::vector<Splice> splices;
  NodeIndex next_kept = 0;  // elements before it are inside of what goes
  for (const auto& [element, change] : changes_) {
    if (element < next_kept) continue;
    if (change.is_removed || change.text) next_kept = document_.EndOf(element);
    if (change.name && !change.is_removed) AppendRenaming(element, *change.name, splices);
    if (change.is_removed || change.text || !change.added.empty()) {
      splices.push_back(SpliceFor(element, change));
    }
  }
  std::sort(splices.begin(), splices.end(),
            [](const Splice& a, const Splice& b) { return a.from < b.from; });

  const std::string_view bytes = document_.Bytes();
  const std::string_view text = document_.TextBytes();
  const Encoding& encoding = document_.GetEncoding();
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8 + 64);
  std::size_t text_done = 0;
  std::size_t bytes_done = encoding.BomLength();
  out.append(bytes.substr(0, bytes_done));
  // The bytes of the text up to a place.
  const auto take = [&](std::size_t text_end) {
    const std::size_t length =
        encoding.LengthOf(text.substr(text_done, text_end - text_done), bytes.substr(bytes_done));
    const std::string_view taken = bytes.substr(bytes_done, length);
    text_done = text_end;
    bytes_done += length;
    return taken;
  };
  for (const Splice& splice : splices) {
    // What is added after a removed element lies inside of what is removed with it.
    if (splice.from > text_done) out.append(take(splice.from));
    out += encoding.Encode(splice.text);
    if (splice.to > text_done) take(splice.to);
  }
  out.append(bytes.substr(bytes_done));
  return out;
}

}  // namespace sab::xml
