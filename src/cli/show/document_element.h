#pragma once

#include <string>

namespace sabxml::cli {

/// The local name of a file's document element, whatever the file's encoding; empty where there is
/// none in sight. Raises Failure for a file that cannot be read.
std::string DocumentElementOf(const std::string& file);

/// Whether a file can be no XML: it begins with something other than white space and '<'. Raises
/// Failure for a file that cannot be read.
bool IsPlainText(const std::string& file);

}  // namespace sabxml::cli
