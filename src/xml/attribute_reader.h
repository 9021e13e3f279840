#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "xml/cursor.h"
#include "xml/namespaces.h"

namespace sab::xml {

/// Reads the attributes of a start tag, and with them the namespaces that it declares.
class AttributeReader : protected Cursor {
 protected:
  using Cursor::Cursor;

  /// Reads from the end of an element's name up to the > or / of its tag.
  /// @param depth of the element
  /// @param flags that it has before
  /// @return its flags, with what xml:space says
  std::uint8_t ReadAttributes(std::uint32_t depth, std::uint8_t flags);

  [[noreturn]] void FailUndeclared(std::string_view prefix) const;

  Namespaces namespaces_;  // in scope

 private:
  struct Attribute {
    std::string_view name;
    std::size_t prefix_length;  // without the colon
  };
  struct ExpandedName {
    std::uint32_t namespace_number;
    std::string_view local_name;  // inside the text
  };

  std::string_view ReadValue();
  void CheckUnique();
  void CheckUnique(std::vector<ExpandedName>& names) const;
  [[noreturn]] void FailRepeated(std::string_view name) const;

  std::vector<Attribute> attributes_;  // of the tag being read
};

}  // namespace sab::xml
