#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sabxml::cli {

/// The name that a word may be a misspelling of, as a question that ends a message:
/// "; did you mean show?". Where no name is near, what else may help; empty without that. Letter
/// case does not matter.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names,
                       const std::string& otherwise = {});

}  // namespace sabxml::cli
