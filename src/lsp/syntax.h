#pragma once

#include <string_view>
#include <vector>

#include "project/file.h"

namespace sab::lsp {

// Where things are in a document; offsets are those of File::Text().

/// The innermost element around a place; kNoNode outside of the document element.
xml::NodeIndex ElementAt(const project::File& file, std::size_t offset);

/// The name in a start tag and in its end tag; the latter is empty where there is none.
project::Span StartNameOf(const project::File& file, xml::NodeIndex element);
project::Span EndNameOf(const project::File& file, xml::NodeIndex element);
/// The whole element.
project::Span SpanOf(const project::File& file, xml::NodeIndex element);
/// Between the tags; empty for <name/>.
project::Span ContentSpanOf(const project::File& file, xml::NodeIndex element);

/// The elements from the document element to this one.
std::vector<xml::NodeIndex> PathTo(const project::File& file, xml::NodeIndex element);

/// A text as a document holds it.
std::string Escaped(std::string_view text);

/// Blanks that begin the line of a place.
std::string_view IndentationAt(std::string_view text, std::size_t offset);
/// What ends the lines of a text.
std::string_view LineEndOf(std::string_view text);
/// By what lines of a document are indented further than those around them.
std::string_view IndentationStepOf(const project::File& file);

inline bool Contains(project::Span span, std::size_t offset) {
  return span.from <= offset && offset <= span.to;
}

}  // namespace sab::lsp
