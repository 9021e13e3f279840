#pragma once

#include <string>

namespace sabxml::cli {

/// On the command line this file is the standard input.
inline constexpr char kStandardInput[] = "-";

/// Where a file of the command line is read from: for "-" a copy of the standard input, which lasts
/// as long as the program and can be opened any number of times. Raises Failure.
std::string PathToRead(const std::string& file);

/// A message about a file that was read, with the name of the standard input instead of its copy's.
std::string WithStandardInput(std::string message);

}  // namespace sabxml::cli
