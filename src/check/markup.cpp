#include "check/markup.h"

#include <algorithm>

namespace sab::check {

using xml::NodeIndex;
using xml::NodeType;

void CheckAttributes(Reporter& reporter, project::FileIndex file, NodeIndex element) {
  const xml::Document& xml = reporter.GetProject().At(file).Xml();
  const std::string_view text = xml.TextBytes();
  std::size_t at = xml.At(element).start + std::size_t{1} + xml.At(element).name_length;
  for (;;) {
    while (xml::Has(text[at], xml::kSpace)) ++at;
    if (text[at] == '>' || text[at] == '/') return;
    const std::size_t name = at;
    while (!xml::Has(text[at], xml::kSpace) && text[at] != '=') ++at;
    const std::string_view found = text.substr(name, at - name);
    at = text.find_first_of("\"'", at);
    at = text.find(text[at], at + 1) + 1;
    // Those with a prefix, xml:space and xsi:schemaLocation among them, are not for the server.
    if (found == "xmlns" || found.find(':') != found.npos) continue;
    reporter.Add(Mistake::kUnexpectedAttribute, file, {name, name + found.size()},
                 {"the attribute " + std::string(found) + " of " + Tag(xml.LocalNameOf(element)) +
                  " is never read: values are texts of elements"});
  }
}

void CheckReplacementCharacter(Reporter& reporter, project::FileIndex file, NodeIndex node) {
  const xml::Document& xml = reporter.GetProject().At(file).Xml();
  const xml::Node& at = xml.At(node);
  const bool has_text = at.type == NodeType::kText || at.type == NodeType::kCData ||
                        (at.type == NodeType::kElement && xml.HasOnlyText(node));
  if (!has_text) return;
  const std::string_view content = xml.TextBytes().substr(at.start, at.end - at.start);
  std::size_t found = content.find(kReplacementCharacter);
  for (const char* const reference : {"&#xFFFD;", "&#xfffd;", "&#65533;"}) {
    found = std::min(found, content.find(reference));
  }
  if (found == content.npos) return;
  const std::size_t from = at.start + found;
  reporter.Add(Mistake::kReplacementCharacter, file, {from, from + kReplacementCharacter.size()},
               {"the character U+FFFD stands for one that was lost: write it again"});
}

bool IsDamaged(const project::File& file, NodeIndex element, std::string_view text) {
  if (text.find(kReplacementCharacter) != text.npos) return true;
  const xml::Document& xml = file.Xml();
  if (xml.HasOnlyText(element)) return false;
  for (NodeIndex child = xml.FirstChildElement(element); child != xml::kNoNode;
       child = xml.NextElement(child)) {
    if (file.PlacementOf(child) == project::Placement::kInValue) return true;
  }
  return false;
}

void ReportForeign(Reporter& reporter, project::FileIndex file, NodeIndex element) {
  const project::File& at = reporter.GetProject().At(file);
  const bool is_looked_for = at.GetKind() == formats::Kind::kUserInterface;
  reporter.Add(Mistake::kForeignNamespace, file, at.TagSpan(element),
               {Tag(at.Xml().LocalNameOf(element)) +
                (is_looked_for ? " is in a namespace, which a user interface has none of"
                               : " is in a namespace, in which the server does not look for it") +
                ": remove its prefix or xmlns"});
}

}  // namespace sab::check
