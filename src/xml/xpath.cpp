#include <algorithm>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "xml/characters.h"
#include "xml/error.h"
#include "xml/path.h"

namespace sab::xml {
namespace {

// Begins the name of an element in a default namespace; no name has it in a file.
constexpr char kMark = '\1';

bool IsName(std::string_view token) { return Has(token[0], kNameStart) && token[0] != ':'; }

// The literal, the name or the single character that an expression goes on with. A prefix is a name
// of its own.
std::string_view FirstToken(std::string_view expression) {
  std::size_t end = 1;
  if (expression[0] == '"' || expression[0] == '\'') {
    end = std::min(expression.find(expression[0], 1), expression.size() - 1) + 1;
  } else if (IsName(expression)) {
    while (end < expression.size() && Has(expression[end], kNameByte) && expression[end] != ':')
      ++end;
  }
  return expression.substr(0, end);
}

// A path has no way to declare a prefix, so one in a path is a mistake that would match nothing.
void RefusePrefixes(std::string_view expression) {
  while (!expression.empty()) {
    const std::string_view token = FirstToken(expression);
    expression.remove_prefix(token.size());
    if (IsName(token) && expression.starts_with(':') && !expression.starts_with("::") &&
        token != "xml")
      throw Error("the prefix " + std::string(token) + " is not declared");
  }
}

// The same expression, well-formed, whose functions that tell a name leave the mark out of it.
std::string TellingNames(std::string_view expression) {
  std::string result;
  std::vector<bool> parentheses;  // of the open ones: whether they hold such a function's argument
  bool tells_name = false;
  while (!expression.empty()) {
    const std::string_view token = FirstToken(expression);
    expression.remove_prefix(token.size());
    if (token == "name" || token == "local-name") {
      const std::size_t next = expression.find_first_not_of(" \t\r\n");
      tells_name = next != expression.npos && expression[next] == '(';
      if (tells_name) result += "translate(";
    }
    result += token;
    if (token == "(") {
      parentheses.push_back(std::exchange(tells_name, false));
    } else if (token == ")") {
      if (parentheses.back()) result += {',', '\'', kMark, '\'', ',', '\'', '\'', ')'};
      parentheses.pop_back();
    }
  }
  return result;
}

}  // namespace

// The library's tree of the same document, which is known to be well-formed: it reads leniently and
// in full. Elements are identified by their number in document order. The library compares names as
// they are written; elements in a default namespace have a mark before theirs, so that a name
// without a prefix does not match them.
class XPathTree {
 public:
  explicit XPathTree(const Document& document) {
    const std::string_view text = document.TextBytes();
    const pugi::xml_parse_result result =
        tree_.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
    if (!result) throw Error(std::string("the path cannot be evaluated: ") + result.description());
    NumberElements(document);
  }

  pugi::xpath_node_set Select(std::string_view expression) {
    pugi::xpath_node_set found = tree_.select_nodes(TellingNames(expression).c_str());
    found.sort();
    return found;
  }

  // The element; kNoNode for the document; nothing for what is neither.
  std::optional<NodeIndex> NumberOf(const pugi::xpath_node& found) const {
    if (found.attribute()) return std::nullopt;
    if (found.node() == tree_) return kNoNode;
    const auto own = numbers_.find(found.node().hash_value());
    return own != numbers_.end() ? std::optional(own->second) : std::nullopt;
  }

 private:
  void NumberElements(const Document& document) {
    NodeIndex own = kNoNode;
    pugi::xml_node node = tree_;
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
      numbers_.emplace(node.hash_value(), own);
      const std::string_view name = document.NameOf(own);
      if (document.IsInNamespace(own) && document.LocalNameOf(own) == name &&
          !node.set_name((kMark + std::string(name)).c_str()))
        throw std::bad_alloc();
    }
  }

  pugi::xml_document tree_;
  std::unordered_map<std::size_t, NodeIndex> numbers_;
};

Paths::Paths(const Document& document) : document_(document) {}

Paths::~Paths() = default;

std::vector<NodeIndex> Paths::Evaluate(std::string_view expression, bool with_document) {
  try {
    const pugi::xpath_query query(std::string(expression).c_str());
    if (query.return_type() != pugi::xpath_type_node_set) {
      throw Error("the path gives a value instead of elements");
    }
    RefusePrefixes(expression);
    if (!tree_) tree_ = std::make_unique<XPathTree>(document_);
    std::vector<NodeIndex> nodes;
    for (const pugi::xpath_node& found : tree_->Select(expression)) {
      const std::optional<NodeIndex> number = tree_->NumberOf(found);
      if (number && (*number != kNoNode || with_document)) nodes.push_back(*number);
    }
    return nodes;
  } catch (const pugi::xpath_exception& error) {
    throw Error(std::string("the path is not well-formed: ") + error.what() + " at character " +
                std::to_string(error.result().offset + 1));
  }
}

}  // namespace sab::xml
