#pragma once

#include <string_view>

#include "lsp/client.h"
#include "lsp/meaning.h"
#include "lsp/workspace.h"

namespace sab::lsp {

/// What is being written at a place of a text. Offsets are those of File::OriginalText().
struct CompletionPlace {
  enum class What { kNothing, kElement, kEndTag, kContent };

  What what = What::kNothing;
  /// The element around it, in the tolerant reading; kNoNode outside of the document element.
  xml::NodeIndex around = xml::kNoNode;
  /// What is written already and gives way: a name without its <, or the text of a value.
  project::Span typed;
  std::size_t tag = 0;   ///< the <, for kElement and kEndTag
  bool has_end = false;  ///< the tag that is written has its >
};

/// @param cursor in the original text
CompletionPlace PlaceAt(const View& view, std::size_t cursor);

/// Completion items for the elements that may be at a place.
void AddElements(const ClientAbilities& client, const View& view, const CompletionPlace& place,
                 const Range& range, Json& items);
/// The same for the values that the element around it may have.
void AddValues(const View& view, const formats::Rule& rule, std::string_view typed,
               const Range& range, Json& items);

}  // namespace sab::lsp
