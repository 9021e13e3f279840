#pragma once

#include <string>

#include "cli/check/check_output.h"

namespace sabxml::cli {

/// Takes out of a result what a baseline knows. A finding is known by its file, its rule and its
/// message, so lines may move. Raises Misunderstood for a file that cannot be read.
/// @param baseline the path of its file
void RemoveKnown(CheckResult& result, const std::string& baseline);

/// The lines of a baseline that knows all of a result, sorted. Paths in them are relative to the
/// folder of the baseline, so that it is the same from every current folder.
/// @param baseline the path of its file
std::string BaselineOf(const CheckResult& result, const std::string& baseline);

}  // namespace sabxml::cli
