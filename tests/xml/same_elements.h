#pragma once

#include <string>
#include <vector>

#include "xml/document.h"
#include "xml/oracles.h"
#include "xml/text.h"

namespace sab::xml::testing {

/// UTF-8 as UTF-16, without white space: what counts of that is another matter.
inline std::u16string Comparable(std::string utf8) {
  const std::size_t size = utf8.size();
  utf8.append(16, '\0');  // which conversion looks at
  std::u16string text;
  AppendUtf16({utf8.data(), size}, text);
  std::erase_if(text, [](char16_t unit) { return IsTrimmed(unit); });
  return text;
}

/// What an oracle and a document do not have in common; "" if all is the same.
inline std::string DifferenceFrom(const std::vector<OracleElement>& expected,
                                  const Document& document) {
  auto next = expected.begin();
  for (NodeIndex node = 1; node < document.NodeCount(); ++node) {
    if (!document.IsElement(node)) continue;
    if (next == expected.end()) return "more elements";
    const OracleElement& element = *next++;
    if (document.LocalNameOf(node) != element.local_name) return element.local_name;
    std::u16string text;
    document.AppendText(node, text);
    std::erase_if(text, [](char16_t unit) { return IsTrimmed(unit); });
    if (text != Comparable(element.text)) return element.text;
    for (const auto& [name, value] : element.attributes) {
      auto own = document.AttributeOf(node, name);
      if (!own) return name;
      std::erase_if(*own, [](char16_t unit) { return IsTrimmed(unit); });
      if (*own != Comparable(value)) return name + "=" + value;
    }
  }
  return next == expected.end() ? "" : next->local_name;
}

}  // namespace sab::xml::testing
