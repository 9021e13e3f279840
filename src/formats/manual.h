#pragma once

#include <string>

#include "formats/rule.h"

namespace sab::formats {

/// A type as the documents name it: "class identifier"; empty for an element without a text.
std::string_view WordsFor(Type type);

/// The elements of a document as tables in Markdown, UTF-8: first those that are found by their
/// paths, then a table for each element whose content is read as it comes.
std::string TablesOf(const Document& document);

}  // namespace sab::formats
