#include "check/suppression.h"

#include <algorithm>
#include <map>

namespace sab::check {
namespace {

using xml::kNoNode;
using xml::NodeIndex;
using xml::NodeType;

// The element after a comment, other comments between them.
NodeIndex ElementAfter(const xml::Document& xml, NodeIndex comment) {
  for (NodeIndex node = xml.NextSibling(comment); node != kNoNode; node = xml.NextSibling(node)) {
    if (xml.IsElement(node)) return node;
    if (xml.TypeOf(node) != NodeType::kComment) return kNoNode;
  }
  return kNoNode;
}

}  // namespace

std::vector<Suppressed> SuppressedIn(const project::File& file, std::vector<std::string>* notes) {
  constexpr std::string_view kWord = "sabxml-ignore";
  std::vector<Suppressed> all;
  if (!file.HasElements()) return all;
  const xml::Document& xml = file.Xml();
  for (NodeIndex node = 1; node < xml.NodeCount(); ++node) {
    if (xml.TypeOf(node) != NodeType::kComment) continue;
    std::string_view text =
        xml.TextBytes().substr(xml.At(node).start, xml.At(node).end - xml.At(node).start);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n-!<"), text.size()));
    if (!text.starts_with(kWord)) continue;
    const NodeIndex element = ElementAfter(xml, node);
    if (element == kNoNode) continue;
    Suppressed suppressed{xml.At(element).start, xml.EndOfMarkup(element), {}};
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
        if (notes) {
          notes->push_back(file.Path() + ":" + std::to_string(place.line) +
                           ": the comment ignores nothing, because there is no rule " +
                           std::string(id));
        }
        break;
      }
    }
    if (is_known) all.push_back(std::move(suppressed));
  }
  return all;
}

void Suppress(const project::Project& project, Findings& findings) {
  std::map<project::FileIndex, std::vector<Suppressed>> by_file;
  for (const Finding& finding : findings.list) {
    const auto [place, is_new] = by_file.try_emplace(finding.file);
    if (is_new) place->second = SuppressedIn(project.At(finding.file), &findings.notes);
  }
  std::erase_if(findings.list, [&by_file](const Finding& finding) {
    return finding.where.start.line != 0 &&
           std::ranges::any_of(by_file[finding.file], [&finding](const Suppressed& part) {
             return part.Covers(finding.offset, finding.mistake);
           });
  });
}

}  // namespace sab::check
