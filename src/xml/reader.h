#pragma once

#include <string>

#include "xml/node.h"

namespace sab::xml {

/// Checks a text against XML 1.0 with namespaces, in one pass, and makes its nodes on the way. A
/// document type declaration is refused: nothing that it could declare is ever needed, and nothing
/// outside the text is ever read.
/// @param text UTF-8 without a byte-order mark, followed by eight zero bytes that are not part of
/// it
/// @param size bytes of the document itself
/// Raises Error with the place and the reason; std::bad_alloc.
NodeArray Read(const char* text, std::size_t size);

/// The place of a byte as a person counts it.
struct Place {
  unsigned line;
  unsigned column;
};
/// Lines end with LF, CR LF or CR.
/// @param text NUL-terminated
Place PlaceOf(const char* text, std::size_t offset);

}  // namespace sab::xml
