#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/documents.h"

namespace sab::project {

/// The kinds of documents that have elements, in their order.
std::vector<const formats::Document*> DocumentsWithElements();

/// What a kind is called on a command line: "user-interface".
std::string ShortNameOf(const formats::Document& document);
/// By that name, or by the name of its document element, in any letter case; null for another.
const formats::Document* DocumentNamed(std::string_view name);

/// An XML Schema 1.0 of a kind of document, in UTF-8: names, nesting, types as patterns and the
/// lines of help. Elements may be in any order, as they may for the server; elements and attributes
/// of other namespaces are allowed everywhere.
std::string XmlSchemaOf(const formats::Document& document);

/// An OASIS catalogue that leads from the address of each schema, urn:sabxml:schema:KIND, to
/// KIND.xsd beside it.
std::string XmlCatalogOfSchemas();

}  // namespace sab::project
