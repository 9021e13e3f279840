#pragma once

#include <memory>
#include <string>
#include <utility>

#include "xml/document.h"
#include "xml/edit.h"
#include "xml/path.h"

namespace sab {

/// A document that has been read, with what finds and changes its elements.
struct OpenDocument {
  /// Raises what xml::Document does.
  explicit OpenDocument(std::string bytes) : xml(std::move(bytes)), paths(xml), editor(xml) {}

  const xml::Document xml;
  xml::Paths paths;
  xml::Editor editor;
  /// The same document as other libraries see it, where that is another one; see node_handle.h.
  std::shared_ptr<void> foreign_view;
};

/// An element of an open document; lives no longer than that.
struct ElementPlace {
  OpenDocument* document = nullptr;
  xml::NodeIndex node = xml::kNoNode;
};

}  // namespace sab
