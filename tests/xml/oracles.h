#pragma once

#include <string>
#include <vector>

namespace sab::xml::testing {

// What two independent readers say of a document.

/// Whether expat takes it, with namespaces.
bool ExpatAccepts(const std::string& bytes);
/// Whether libxml2 takes it, with namespaces and without mending anything.
bool LibxmlAccepts(const std::string& bytes);

/// The name and the whole text of every element in document order, as libxml2 has them.
std::vector<std::string> LibxmlTexts(const std::string& bytes);
/// The positions, in document order of all elements, of those that libxml2's XPath selects.
std::vector<int> LibxmlSelect(const std::string& bytes, const std::string& path);

}  // namespace sab::xml::testing
