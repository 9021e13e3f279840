#pragma once

#include <string>
#include <vector>

#include "formats/documents.h"

namespace sabxml::cli {

// Kinds of documents, by the names that a command line has for them: "user-interface".

/// The kinds that consist of elements.
std::vector<std::string> KindsWithElements();

/// Raises Misunderstood for a name that none of the kinds has.
const sab::formats::Document& CheckedKind(const std::string& name);
[[noreturn]] void RefuseKind(const std::string& name, const std::vector<std::string>& kinds);

/// "a, b, c"
std::string Listed(const std::vector<std::string>& names);

}  // namespace sabxml::cli
