#pragma once

#include <map>
#include <span>
#include <string>

#include "lsp/workspace.h"

namespace sab::lsp {

/// What the elements of a file mean: by the format of its kind, or, in a settings file, by the
/// groups whose blocks it has. A block is one that an option of the application names, or an
/// element most of whose elements are keys of one group.
class Meaning {
 public:
  explicit Meaning(const View& view);

  /// The rule of an element; null where it has none.
  const formats::Rule* RuleOf(xml::NodeIndex element) const;
  /// What an element may hold; nothing for one with a text. kNoNode is the document.
  std::span<const formats::Rule> ContentOf(xml::NodeIndex element) const;
  /// The group of a block of settings; null for another element.
  const formats::SettingsGroup* GroupOf(xml::NodeIndex element) const;
  /// The elements that may hold one of this rule, in words.
  std::string PlacesOf(xml::NodeIndex element) const;

 private:
  void FindNamedBlocks(const std::vector<check::SettingsChoice>& choices);
  void FindLikelyBlocks();

  const project::File& file_;
  std::map<xml::NodeIndex, const formats::SettingsGroup*> blocks_;
};

/// Words for what an element is: its help, type, need, default and which of several counts, in
/// Markdown.
std::string DescriptionOf(const formats::Rule& rule);

/// What a text is taken for by its type, "true"; empty where there is nothing to say.
std::string UnderstoodAs(const formats::Rule& rule, std::string_view text);

}  // namespace sab::lsp
