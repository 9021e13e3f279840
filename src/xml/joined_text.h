#pragma once

#include <string>

#include "xml/node.h"

namespace sab::xml {

class Document;

/// Appends the text of a node as Document::AppendText gives it: that of all nodes in it, joined.
void AppendJoinedText(const Document& document, NodeIndex node, std::u16string& out);

}  // namespace sab::xml
