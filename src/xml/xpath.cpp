#include <algorithm>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>

#include "xml/characters.h"
#include "xml/error.h"
#include "xml/path.h"

namespace sab::xml {
namespace {

// The document is known to be well-formed; the library reads the same text leniently and in full.
// Elements are told apart by their number in document order.
void LoadInto(const Document& document, pugi::xml_document& tree) {
  const std::string_view text = document.TextBytes();
  const pugi::xml_parse_result result =
      tree.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!result) throw Error(std::string("the path cannot be evaluated: ") + result.description());
}

// The library compares names as they are written. So that a name without a prefix does not match an
// element whose namespace is the default one, that element gets a colon in front, which leaves its
// local name as it is.
std::unordered_map<std::size_t, NodeIndex> NumberElements(const Document& document,
                                                          pugi::xml_document& tree) {
  std::unordered_map<std::size_t, NodeIndex> numbers;
  NodeIndex own = kNoNode;
  pugi::xml_node node = tree;
  const auto next_element = [&] {
    do {
      if (node.first_child()) {
        node = node.first_child();
      } else {
        while (node && !node.next_sibling()) node = node.parent();
        node = node.next_sibling();
      }
    } while (node && node.type() != pugi::node_element);
    return static_cast<bool>(node);
  };
  while (next_element()) {
    do ++own;
    while (!document.IsElement(own));
    numbers.emplace(node.hash_value(), own);
    if (document.IsInNamespace(own) && document.LocalNameOf(own) == document.NameOf(own)) {
      node.set_name((':' + std::string(document.NameOf(own))).c_str());
    }
  }
  return numbers;
}

// A path has no way to declare a prefix, so one in a path is a mistake that would match nothing.
void RefusePrefixes(std::string_view expression) {
  for (std::size_t i = 0; i < expression.size();) {
    const char c = expression[i];
    if (c == '"' || c == '\'') {
      i = std::min(expression.find(c, i + 1), expression.size() - 1) + 1;
      continue;
    }
    const std::size_t start = i++;
    if (!Has(c, kNameStart) || c == ':') continue;
    while (i < expression.size() && Has(expression[i], kNameByte) && expression[i] != ':') ++i;
    const std::string_view name = expression.substr(start, i - start);
    const std::string_view behind = expression.substr(i, 2);
    if (behind.starts_with(':') && behind != "::" && name != "xml") {
      throw Error("the prefix " + std::string(name) + " is not declared");
    }
  }
}

}  // namespace

std::vector<NodeIndex> EvaluateXPath(const Document& document, std::string_view expression) {
  try {
    const pugi::xpath_query query(std::string(expression).c_str());
    if (query.return_type() != pugi::xpath_type_node_set) {
      throw Error("the path gives a value instead of elements");
    }
    RefusePrefixes(expression);
    pugi::xml_document tree;
    LoadInto(document, tree);
    const auto numbers = NumberElements(document, tree);
    pugi::xpath_node_set found = tree.select_nodes(query);
    found.sort();
    std::vector<NodeIndex> nodes;
    if (found.empty()) return nodes;
    for (const pugi::xpath_node& node : found) {
      // Attributes, texts and the document itself are passed over.
      const auto own = numbers.find(node.node().hash_value());
      if (!node.attribute() && own != numbers.end()) nodes.push_back(own->second);
    }
    return nodes;
  } catch (const pugi::xpath_exception& error) {
    throw Error(std::string("the path is not well-formed: ") + error.what() + " at character " +
                std::to_string(error.result().offset + 1));
  }
}

}  // namespace sab::xml
