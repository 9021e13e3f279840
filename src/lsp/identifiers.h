#pragma once

#include <string>
#include <vector>

#include "lsp/workspace.h"

namespace sab::lsp {

/// An identifier under the cursor.
struct Named {
  formats::Subject subject = formats::Subject::kNone;
  std::string text;
  project::Span span;  ///< in the view's file
  xml::NodeIndex node = xml::kNoNode;
  bool is_definition = false;
};

/// The identifier at a place: in the text of an element that defines or uses one. Nothing where
/// there is none, or where the text is not simply that of the file.
std::optional<Named> IdentifierAt(const View& view, std::size_t offset);

/// Where an identifier of a file is defined: in the files where a host looks for it, or else
/// anywhere in the application.
std::vector<project::Occurrence> DefinitionsOf(const View& view, const Named& named);
/// Where it is used. Identifiers of a scope smaller than the application are those of its files.
std::vector<project::Occurrence> ReferencesOf(const View& view, const Named& named);

/// All definitions that a reference in a file may mean, in order.
std::vector<project::Occurrence> DefinitionsFor(const View& view, formats::Subject subject);

/// What is known of a command: its name, class, keys and where it is defined, in Markdown.
std::string CommandWords(const View& view, const project::Occurrence& definition);
/// Its name for a user; empty where it has none.
std::string_view CommandNameOf(const View& view, const project::Occurrence& definition);

}  // namespace sab::lsp
