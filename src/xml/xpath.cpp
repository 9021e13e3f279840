#include <algorithm>
#include <map>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>

#include "xml/characters.h"
#include "xml/error.h"
#include "xml/path.h"

namespace sab::xml {
namespace {

// Calls with every name in an expression outside of its literals, and what follows it. A prefix
// comes as a name of its own.
template <class Visit>
void ForEachName(std::string_view expression, const Visit& visit) {
  for (std::size_t i = 0; i < expression.size();) {
    const char c = expression[i];
    if (c == '"' || c == '\'') {
      i = std::min(expression.find(c, i + 1), expression.size() - 1) + 1;
      continue;
    }
    const std::size_t start = i++;
    if (!Has(c, kNameStart) || c == ':') continue;
    while (i < expression.size() && Has(expression[i], kNameByte) && expression[i] != ':') ++i;
    visit(expression.substr(start, i - start), expression.substr(i));
  }
}

// A path has no way to declare a prefix, so one in a path is a mistake that would match nothing.
void RefusePrefixes(std::string_view expression) {
  ForEachName(expression, [](std::string_view name, std::string_view rest) {
    if (rest.starts_with(':') && !rest.starts_with("::") && name != "xml")
      throw Error("the prefix " + std::string(name) + " is not declared");
  });
}

}  // namespace

// The library's tree of the same document, which is known to be well-formed: it reads leniently and
// in full. Elements are identified by their number in document order.
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

  pugi::xpath_node_set Select(const pugi::xpath_query& query, std::string_view expression) {
    Hiding hiding(*this);
    hiding.Hide(expression);
    pugi::xpath_node_set found = tree_.select_nodes(query);
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
  // The library compares names as they are written. So that a name without a prefix does not match
  // an element whose namespace is the default one, such elements of the names in an expression have
  // a colon in front while it is evaluated. Others keep theirs, for the function name().
  class Hiding {
   public:
    explicit Hiding(XPathTree& tree) : tree_(tree) {}
    Hiding(const Hiding&) = delete;
    Hiding& operator=(const Hiding&) = delete;
    // The shorter name takes the place of the longer one, which cannot fail.
    ~Hiding() {
      for (const auto* elements : hidden_) Rename(elements->second, elements->first);
    }

    void Hide(std::string_view expression) {
      if (tree_.in_default_namespace_.empty()) return;
      ForEachName(expression, [this](std::string_view name, std::string_view rest) {
        rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
        const auto found = tree_.in_default_namespace_.find(name);
        if (found == tree_.in_default_namespace_.end() || rest.starts_with('(')) return;
        if (std::find(hidden_.begin(), hidden_.end(), &*found) != hidden_.end()) return;
        hidden_.push_back(&*found);
        if (!Rename(found->second, ':' + std::string(name))) throw std::bad_alloc();
      });
    }

   private:
    static bool Rename(const std::vector<pugi::xml_node>& elements, const std::string& name) {
      return std::all_of(elements.begin(), elements.end(), [&name](pugi::xml_node element) {
        return element.set_name(name.c_str());
      });
    }

    XPathTree& tree_;
    std::vector<const std::pair<const std::string, std::vector<pugi::xml_node>>*> hidden_;
  };

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
      if (document.IsInNamespace(own) && document.LocalNameOf(own) == document.NameOf(own))
        in_default_namespace_[std::string(document.NameOf(own))].push_back(node);
      // For namespace-uri() of an element with the colon; no path sees it as an attribute.
      const pugi::xml_attribute declared = node.attribute("xmlns");
      if (declared && !node.append_attribute("xmlns:").set_value(declared.value()))
        throw std::bad_alloc();
    }
  }

  pugi::xml_document tree_;
  std::unordered_map<std::size_t, NodeIndex> numbers_;
  std::map<std::string, std::vector<pugi::xml_node>, std::less<>> in_default_namespace_;
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
    for (const pugi::xpath_node& found : tree_->Select(query, expression)) {
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
