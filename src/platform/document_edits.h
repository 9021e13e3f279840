#pragma once

#include <string_view>

#include "base/text.h"
#include "platform/load_failure.h"
#include "xml/edit.h"

namespace sab {

/// Raises ComError(E_INVALIDARG) for what cannot name an element. A prefix is not allowed.
/// @param name UTF-8
void CheckElementName(std::string_view name);

/// An element that the next Save of its document will add. It can be given children; it is not
/// part of the loaded document and cannot be read. Lives no longer than its document.
class AppendedElement {
 public:
  explicit AppendedElement(xml::NewElement& element) : element_(&element) {}

  /// Adds a child after the last one.
  /// @param name UTF-8, without a prefix. Raises ComError(E_INVALIDARG) if it is no name.
  AppendedElement Append(std::string_view name, TextView text = {});

 private:
  xml::NewElement* element_;
};

namespace backend {

/// Adds an element under one of a document; see AppendedElement::Append.
AppendedElement AppendTo(xml::Editor& editor, xml::NodeIndex parent, std::string_view name,
                         TextView text);

void SetTextOf(xml::Editor& editor, xml::NodeIndex element, TextView text);

/// Writes the bytes of the changed document over the file. Raises ComError(E_INVALIDARG) for a
/// text that XML cannot hold, otherwise as ReplaceFileBytes does.
void SaveEdits(const xml::Editor& editor, TextView file);

/// What saving means where no document was loaded: nothing if the file is missing, except that what
/// keeps it from being made is raised; an existing file that could not be read must not be lost, so
/// ComError(kDocumentNotLoaded) is raised.
void RefuseToOverwrite(TextView file, const LoadFailure& failure);

/// The bytes of a document that starts from nothing.
std::string BytesOfNewDocument(std::string_view root_name);

}  // namespace backend
}  // namespace sab
