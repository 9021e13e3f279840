#pragma once

#include <functional>

#include "lsp/client.h"
#include "lsp/workspace.h"

namespace sab::lsp {

/// What a request works with.
struct Context {
  Workspace& workspace;
  const ClientAbilities& client;
  /// Whether the client no longer wants the answer.
  std::function<void()> stop_if_cancelled;
};

// The requests of the protocol by what they are about. Each takes the parameters of its request and
// gives the result; RequestError is an answer, too.

Json Complete(Context& context, const Json& params);
Json Hover(Context& context, const Json& params);

Json Definition(Context& context, const Json& params);
Json References(Context& context, const Json& params);
Json Highlights(Context& context, const Json& params);
Json PrepareRename(Context& context, const Json& params);
Json Rename(Context& context, const Json& params);

Json DocumentSymbols(Context& context, const Json& params);
Json WorkspaceSymbols(Context& context, const Json& params);

Json FoldingRanges(Context& context, const Json& params);
Json SelectionRanges(Context& context, const Json& params);
Json LinkedEditing(Context& context, const Json& params);
Json DocumentLinks(Context& context, const Json& params);

Json SemanticTokensLegend();
Json SemanticTokens(Context& context, const Json& params);
Json SemanticTokensOfRange(Context& context, const Json& params);
Json InlayHints(Context& context, const Json& params);

Json Format(Context& context, const Json& params);
Json FormatRange(Context& context, const Json& params);

Json Colours(Context& context, const Json& params);
Json ColourPresentations(Context& context, const Json& params);

Json CodeActions(Context& context, const Json& params);

}  // namespace sab::lsp
