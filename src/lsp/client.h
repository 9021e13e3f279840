#pragma once

namespace sab::lsp {

/// What a client can do, of what makes a difference to the answers.
struct ClientAbilities {
  bool has_snippets = false;
  bool keeps_indentation = false;   ///< takes inserted lines as they are
  bool has_related_places = false;  ///< of diagnostics
  bool has_document_changes = false;
  bool has_symbol_trees = false;
  bool watches_files = false;  ///< on request
  bool has_link_locations = false;
  bool has_action_literals = false;
};

}  // namespace sab::lsp
