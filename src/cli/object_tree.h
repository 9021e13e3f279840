#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "automation.h"

namespace sabxml::cli {

using Json = nlohmann::ordered_json;

/// Everything that an object tells, as JSON: a member for each property and each Get method without
/// arguments; arrays for string arrays and collections; objects for objects. A value that the
/// object refuses to give is {"error": "…"}.
/// @param only names of members, in any letter case; empty for all
Json ReadObject(IDispatch& object, const std::vector<std::string>& only = {});

/// Prints JSON as an aligned tree.
/// @param colours whether names are set off by colour
void PrintTree(std::ostream& out, const Json& tree, bool colours);

}  // namespace sabxml::cli
