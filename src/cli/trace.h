#pragma once

#include <string>

namespace sabxml::cli {

/// From now on Trace writes to the standard error.
void StartTracing();

/// What --verbose tells: which server, registry and files are used, and why. A line of its own.
void Trace(const std::string& line);

}  // namespace sabxml::cli
