#include "check/suppression.h"

#include <algorithm>
#include <set>
#include <vector>

namespace sab::check {
namespace {

using xml::kNoNode;
using xml::NodeIndex;
using xml::NodeType;

struct Suppressed {
  project::FileIndex file;
  std::size_t from;
  std::size_t to;
  std::set<Mistake> mistakes;  // empty for all
};

// The element after a comment, other comments between them.
NodeIndex ElementAfter(const xml::Document& xml, NodeIndex comment) {
  for (NodeIndex node = xml.NextSibling(comment); node != kNoNode; node = xml.NextSibling(node)) {
    if (xml.IsElement(node)) return node;
    if (xml.TypeOf(node) != NodeType::kComment) return kNoNode;
  }
  return kNoNode;
}

}  // namespace

void Suppress(const project::Project& project, Findings& findings) {
  constexpr std::string_view kWord = "sabxml-ignore";
  std::vector<Suppressed> all;
  std::set<project::FileIndex> files;
  for (const Finding& finding : findings.list) files.insert(finding.file);
  for (const project::FileIndex index : files) {
    const project::File& file = project.At(index);
    if (!file.HasElements()) continue;
    const xml::Document& xml = file.Xml();
    for (NodeIndex node = 1; node < xml.NodeCount(); ++node) {
      if (xml.TypeOf(node) != NodeType::kComment) continue;
      std::string_view text =
          xml.TextBytes().substr(xml.At(node).start, xml.At(node).end - xml.At(node).start);
      text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n-!<"), text.size()));
      if (!text.starts_with(kWord)) continue;
      const NodeIndex element = ElementAfter(xml, node);
      if (element == kNoNode) continue;
      Suppressed suppressed{index, xml.At(element).start, xml.EndOfMarkup(element), {}};
      text.remove_prefix(kWord.size());
      bool is_known = true;
      for (std::size_t at = 0; (at = text.find_first_not_of(" \t\r\n,", at)) != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(" \t\r\n,", at), text.size());
        const std::string_view id = text.substr(at, end - at);
        at = end;
        if (const RuleText* const rule = RuleNamed(id)) {
          suppressed.mistakes.insert(rule->mistake);
        } else if (id.find_first_not_of('-') == id.npos || !suppressed.mistakes.empty()) {
          break;  // words that explain it
        } else {
          is_known = false;
          const xml::Place place = file.PlaceOf(xml.At(node).start);
          findings.notes.push_back(file.Path() + ":" + std::to_string(place.line) +
                                   ": the comment ignores nothing, because there is no rule " +
                                   std::string(id));
          break;
        }
      }
      if (is_known) all.push_back(std::move(suppressed));
    }
  }
  std::erase_if(findings.list, [&all](const Finding& finding) {
    return std::ranges::any_of(all, [&finding](const Suppressed& suppressed) {
      return suppressed.file == finding.file && finding.offset >= suppressed.from &&
             finding.offset < suppressed.to && finding.where.start.line != 0 &&
             (suppressed.mistakes.empty() || suppressed.mistakes.contains(finding.mistake));
    });
  });
}

}  // namespace sab::check
