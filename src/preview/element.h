#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "project/file.h"

namespace sab::preview {

/// Visits the elements in an element that the server knows there, in order.
/// @param visit receives each with its rule
template <class Visit>
void ForEachKnown(const project::File& file, xml::NodeIndex parent, const Visit& visit) {
  const xml::Document& xml = file.Xml();
  for (xml::NodeIndex child = xml.FirstChildElement(parent); child != xml::kNoNode;
       child = xml.NextElement(child)) {
    if (file.PlacementOf(child) == project::Placement::kKnown) visit(child, *file.RuleOf(child));
  }
}

/// The values of an element of a user interface, as the server takes them: of several elements of
/// one name the last counts, and what the server does not know is passed over.
class Values {
 public:
  /// @param file lives longer
  Values(const project::File& file, xml::NodeIndex element)
      : Values(file, std::span(&element, 1)) {}
  /// @param parts elements of one rule whose contents are one whole; may be none
  Values(const project::File& file, std::span<const xml::NodeIndex> parts);

  /// A text by the name of its element; empty if there is none.
  std::string_view operator[](std::string_view name) const;
  /// The element that has the text; kNoNode if there is none.
  xml::NodeIndex NodeOf(std::string_view name) const;
  /// The number that a text begins with, 0 for none; without an element the initial value.
  std::int32_t Number(std::string_view name, std::int32_t initial) const;
  /// Whether any element of a name has exactly this text: a flag that only it changes.
  bool Any(std::string_view name, std::string_view text) const;

 private:
  static constexpr std::size_t kMaxRules = 32;

  const project::File& file_;
  project::ContentId content_ = project::kNothing;
  std::vector<xml::NodeIndex> parts_;  // where there are several
  xml::NodeIndex only_part_ = xml::kNoNode;
  std::array<xml::NodeIndex, kMaxRules> last_{};
};

}  // namespace sab::preview
