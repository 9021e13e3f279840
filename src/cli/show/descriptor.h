#pragma once

#include <string>

#include "cli/host/server.h"
#include "formats/documents.h"

namespace sabxml::cli {

/// A kind of file that the server reads as a whole.
using DescriptorKind = sab::formats::Document;

/// The kind of a file. Raises Failure for a file that cannot be read or is of no known kind.
const DescriptorKind& RecogniseDescriptor(const std::string& file);

/// Loads a descriptor through the server. Raises Failure with file, line, column and reason.
ComPtr<IDispatch> LoadDescriptor(Server& server, const DescriptorKind& kind,
                                 const std::string& file);
}  // namespace sabxml::cli
