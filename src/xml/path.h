#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "xml/document.h"

namespace sab::xml {

/// All elements that a location path selects, seen from the document, in document order. Names
/// without a prefix mean elements in no namespace. A path that is only child steps ("a/b", "/a/b")
/// is walked; any other XPath 1.0 expression is evaluated as such. Raises Error for a path that is
/// empty, not well-formed, gives a value instead of nodes, or uses a prefix (none is declared).
std::vector<NodeIndex> SelectAll(const Document& document, std::string_view path);

/// The first of them; kNoNode if there is none.
NodeIndex SelectFirst(const Document& document, std::string_view path);

/// The first child element of that name that any of the parents has, in their order.
NodeIndex FirstChildNamed(const Document& document, const std::vector<NodeIndex>& parents,
                          std::string_view name);

/// The same for many names at once, no two of which are the same. Fastest where the children stand
/// in the order of the names.
std::vector<NodeIndex> FirstChildrenNamed(const Document& document,
                                          const std::vector<NodeIndex>& parents,
                                          std::span<const std::string_view> names);

/// Whether the path is only child steps.
bool IsChildSteps(std::string_view path);

/// Evaluates an expression that is more than child steps.
std::vector<NodeIndex> EvaluateXPath(const Document& document, std::string_view expression);

}  // namespace sab::xml
