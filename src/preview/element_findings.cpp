#include "preview/element_findings.h"

namespace sab::preview {

using project::File;
using xml::kNoNode;
using xml::NodeIndex;

namespace {

// Nodes are in the order of their places.
NodeIndex LastNodeAt(const xml::Document& xml, std::size_t offset) {
  NodeIndex from = xml.Root();
  NodeIndex to = xml.NodeCount();
  while (to - from > 1) {
    const NodeIndex middle = from + (to - from) / 2;
    (xml.At(middle).start <= offset ? from : to) = middle;
  }
  return from;
}

// Whether the server makes something of an element that has places of its own: a section, an entry
// or a mark. What it passes over is shown where it is.
bool IsDrawn(const File& file, NodeIndex node) {
  if (!file.Xml().IsElement(node) || file.PlacementOf(node) != project::Placement::kKnown) {
    return false;
  }
  const formats::Rule* const rule = file.RuleOf(node);
  return rule && (rule->content_size > 0 || (rule->type == formats::Type::kNone && rule->IsList()));
}

}  // namespace

ElementFindings::ElementFindings(const project::Project& project, const check::Findings& findings)
    : project_(project) {
  for (const check::Finding& finding : findings.list) {
    if (!project.At(finding.file).HasSchema()) continue;
    by_element_[KeyOf(finding.file, OwnerOf(finding))].push_back(&finding);
  }
}

NodeIndex ElementFindings::OwnerOf(const check::Finding& finding) const {
  const File& file = project_.At(finding.file);
  const xml::Document& xml = file.Xml();
  NodeIndex node = LastNodeAt(xml, finding.offset);
  while (node != xml.Root() && node != kNoNode &&
         (xml.EndOfMarkup(node) <= finding.offset || !IsDrawn(file, node))) {
    node = xml.ParentOf(node);
  }
  return node == kNoNode ? xml.Root() : node;
}

std::span<const check::Finding* const> ElementFindings::Of(project::FileIndex file,
                                                           NodeIndex element) const {
  const auto found = by_element_.find(KeyOf(file, element));
  if (found == by_element_.end()) return {};
  return found->second;
}

std::string_view SymbolOf(check::Severity severity) {
  switch (severity) {
    case check::Severity::kError:
      return "\u2716";
    case check::Severity::kWarning:
      return "\u25B2";
    default:
      return "\u25CF";
  }
}

std::string MessageOf(const check::Finding& finding) {
  if (finding.suggestion.empty()) return finding.message;
  return finding.message + "; did you mean " + finding.suggestion + "?";
}

}  // namespace sab::preview
