#pragma once

#include <string>
#include <utility>
#include <vector>

namespace sab::xml::testing {

// What two independent readers say of a document.

/// Whether expat takes it, with namespaces.
bool ExpatAccepts(const std::string& bytes);
/// Whether libxml2 takes it, with namespaces and without mending anything.
bool LibxmlAccepts(const std::string& bytes);

/// An element as a reader has it.
struct OracleElement {
  std::string local_name;
  std::string text;  // all of it, with that of its descendants
  std::vector<std::pair<std::string, std::string>> attributes;  // by name as written; sorted
  bool operator==(const OracleElement&) const = default;
};
/// All elements in document order; none if the document is refused.
std::vector<OracleElement> ExpatElements(const std::string& bytes);
std::vector<OracleElement> LibxmlElements(const std::string& bytes);
/// The positions, in document order of all elements, of those that libxml2's XPath selects.
std::vector<int> LibxmlSelect(const std::string& bytes, const std::string& path);

}  // namespace sab::xml::testing
