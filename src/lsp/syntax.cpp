#include "lsp/syntax.h"

#include <algorithm>

#include "text/utf.h"
#include "xml/text.h"

namespace sab::lsp {

using project::File;
using project::Span;
using xml::kNoNode;
using xml::NodeIndex;

NodeIndex ElementAt(const File& file, std::size_t offset) {
  const xml::Document& xml = file.Xml();
  // Nodes are in the order of their places.
  NodeIndex low = 1;
  NodeIndex high = xml.NodeCount();
  while (low < high) {
    const NodeIndex middle = low + (high - low) / 2;
    if (xml.At(middle).start < offset) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  for (NodeIndex node = low - 1; node != kNoNode; node = xml.ParentOf(node)) {
    if (xml.IsElement(node) && offset < xml.EndOfMarkup(node)) return node;
  }
  return kNoNode;
}

Span StartNameOf(const File& file, NodeIndex element) {
  const Span tag = file.TagSpan(element);
  return {tag.from + 1, tag.to};
}

Span EndNameOf(const File& file, NodeIndex element) {
  const xml::Node& node = file.Xml().At(element);
  const std::size_t from = node.end + std::size_t{2};
  if ((node.flags & xml::kIsEmptyTag) != 0) return {node.end, node.end};
  return {from, from + node.name_length};
}

Span SpanOf(const File& file, NodeIndex element) {
  return {file.Xml().At(element).start, file.Xml().EndOfMarkup(element)};
}

Span ContentSpanOf(const File& file, NodeIndex element) {
  const xml::Node& node = file.Xml().At(element);
  if ((node.flags & xml::kIsEmptyTag) != 0) return {node.end, node.end};
  return {file.Xml().ContentStart(element), node.end};
}

std::vector<NodeIndex> PathTo(const File& file, NodeIndex element) {
  std::vector<NodeIndex> path;
  for (; element != kNoNode; element = file.Xml().ParentOf(element)) path.push_back(element);
  std::ranges::reverse(path);
  return path;
}

std::string Escaped(std::string_view text) {
  std::string out;
  xml::AppendEscaped(text::FromUtf8<char16_t>(text), out);
  return out;
}

std::string_view IndentationAt(std::string_view text, std::size_t offset) {
  offset = std::min(offset, text.size());
  std::size_t line = offset;
  while (line > 0 && text[line - 1] != '\n' && text[line - 1] != '\r') --line;
  std::size_t end = line;
  while (end < offset && (text[end] == ' ' || text[end] == '\t')) ++end;
  return text.substr(line, end - line);
}

std::string_view LineEndOf(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end != text.npos && end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

std::string_view IndentationStepOf(const File& file) {
  constexpr std::string_view kUsual = "  ";
  if (!file.HasElements()) return kUsual;
  const xml::Document& xml = file.Xml();
  const NodeIndex child = xml.FirstChildElement(xml.Root());
  if (child == kNoNode) return kUsual;
  const std::size_t start = xml.At(child).start;
  const std::string_view inner = IndentationAt(file.Text(), start);
  const std::string_view outer = IndentationAt(file.Text(), xml.At(xml.Root()).start);
  const bool starts_line = inner.data() + inner.size() == file.Text().data() + start;
  return starts_line && inner.size() > outer.size() && inner.starts_with(outer)
             ? inner.substr(outer.size())
             : kUsual;
}

}  // namespace sab::lsp
