#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "check/finding.h"

namespace sab::preview {

/// What was found in a project, by the elements that a page draws.
class ElementFindings {
 public:
  /// Both live longer.
  ElementFindings(const project::Project& project, const check::Findings& findings);

  /// What was found in an element, outside of the entries that it holds.
  std::span<const check::Finding* const> Of(project::FileIndex file, xml::NodeIndex element) const;
  /// The element to which a finding belongs; the document element where there is no nearer one.
  xml::NodeIndex OwnerOf(const check::Finding& finding) const;

 private:
  static std::uint64_t KeyOf(project::FileIndex file, xml::NodeIndex element) {
    return std::uint64_t{file} << 32U | element;
  }

  const project::Project& project_;
  std::unordered_map<std::uint64_t, std::vector<const check::Finding*>> by_element_;
};

/// A sign for a severity, which is not told apart by its colour alone.
std::string_view SymbolOf(check::Severity severity);

/// The message with its suggestion, as one sentence without a full stop.
std::string MessageOf(const check::Finding& finding);

}  // namespace sab::preview
