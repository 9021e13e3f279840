#pragma once

#include <string>

#include "xml/node.h"

namespace sab::xml {

class Document;

/// Appends the text of a node as Document::AppendText gives it: that of all nodes in it, joined.
template <class Unit>
void AppendJoinedText(const Document& document, NodeIndex node, std::basic_string<Unit>& out);

}  // namespace sab::xml
