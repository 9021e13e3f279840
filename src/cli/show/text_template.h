#pragma once

#include <string>

#include "cli/host/server.h"
#include "cli/tree_sink.h"

namespace sabxml::cli {

/// Loads a text template through the server. Raises Failure for a file that cannot be read, and for
/// one without a section marker, which is some other kind of text.
ComPtr<IDispatch> LoadTextTemplate(Server& server, const std::string& file);

/// Passes all sections of a loaded template with their lines to the sink.
void PrintTextTemplate(IDispatch& parser, TreeSink& sink);

}  // namespace sabxml::cli
