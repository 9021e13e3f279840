#pragma once

#include <string>
#include <utility>
#include <vector>

namespace sab::xml::testing {

// What two independent readers say of a document.

/// Whether expat takes it, with namespaces.
bool ExpatAccepts(const std::string& bytes);

/// An element as libxml2 has it.
struct OracleElement {
  std::string name;  // as written
  std::string text;  // all of it, with that of its descendants
  std::vector<std::pair<std::string, std::string>> attributes;
};
/// All elements in document order; none if libxml2 refuses the document, with namespaces and
/// without mending anything.
std::vector<OracleElement> LibxmlElements(const std::string& bytes);
/// The positions, in document order of all elements, of those that libxml2's XPath selects.
std::vector<int> LibxmlSelect(const std::string& bytes, const std::string& path);

}  // namespace sab::xml::testing
