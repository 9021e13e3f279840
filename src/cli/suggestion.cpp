#include "cli/suggestion.h"

#include "text/distance.h"

namespace sabxml::cli {

std::string DidYouMean(std::string_view word, const std::vector<std::string>& names,
                       const std::string& otherwise) {
  const std::string_view nearest = sab::text::FindNearest(word, {names.begin(), names.end()}).word;
  if (!nearest.empty()) return "; did you mean " + std::string(nearest) + "?";
  return otherwise.empty() ? std::string() : "; " + otherwise;
}

}  // namespace sabxml::cli
