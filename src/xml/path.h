#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "xml/document.h"

namespace sab::xml {

class XPathTree;

/// Location paths on one document, seen from the document. Names without a prefix mean elements in
/// no namespace. A path that is only child steps ("a/b", "/a/b") is walked; any other XPath 1.0
/// expression is evaluated as such, over a tree that the first one makes and all others share.
/// A path that is empty, not well-formed, gives a value instead of nodes, or uses a prefix (none is
/// declared) raises Error.
class Paths {
 public:
  explicit Paths(const Document& document);
  Paths(const Paths&) = delete;
  Paths& operator=(const Paths&) = delete;
  ~Paths();

  /// All elements that a path selects, in document order.
  std::vector<NodeIndex> SelectAll(std::string_view path);
  /// The first of them; kNoNode if there is none.
  NodeIndex SelectFirst(std::string_view path);

  /// What "<path>/<name>" looks for children in, for any name: the nodes of the path, kNoNode for
  /// the document, none of them inside another. Nothing where only the joined path decides.
  std::optional<std::vector<NodeIndex>> SelectParents(std::string_view path);

 private:
  // Evaluates an expression that is more than child steps; the document itself counts on request.
  std::vector<NodeIndex> Evaluate(std::string_view expression, bool with_document);

  const Document& document_;
  std::unique_ptr<XPathTree> tree_;
};

/// The first child element of that name that any of the parents has, in their order.
NodeIndex FirstChildNamed(const Document& document, const std::vector<NodeIndex>& parents,
                          std::string_view name);

/// The same for many names at once, no two of which are the same. Fastest where the children are
/// in the order of the names.
std::vector<NodeIndex> FirstChildrenNamed(const Document& document,
                                          const std::vector<NodeIndex>& parents,
                                          std::span<const std::string_view> names);

/// Whether the path is only child steps.
bool IsChildSteps(std::string_view path);

}  // namespace sab::xml
