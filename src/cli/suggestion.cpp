#include "cli/suggestion.h"

#include <algorithm>

#include "text/ascii.h"

namespace sabxml::cli {
namespace {

// Letters to add, leave out, replace or swap with their neighbour (optimal string alignment).
std::size_t DistanceBetween(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        steps[i][j] = i + j;
        continue;
      }
      const std::size_t differs =
          sab::EqualsIgnoringAsciiCase(a.substr(i - 1, 1), b.substr(j - 1, 1)) ? 0 : 1;
      steps[i][j] =
          std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + differs});
      const bool is_swapped =
          i > 1 && j > 1 && sab::EqualsIgnoringAsciiCase(a.substr(i - 1, 1), b.substr(j - 2, 1)) &&
          sab::EqualsIgnoringAsciiCase(a.substr(i - 2, 1), b.substr(j - 1, 1));
      if (is_swapped) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
    }
  }
  return steps[a.size()][b.size()];
}

}  // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string>& names) {
  constexpr std::size_t kMaxLength = 100;  // the distance costs the square of it
  const std::string* nearest = nullptr;
  std::size_t least = std::min<std::size_t>((word.size() + 2) / 3, 4) + 1;
  if (word.size() > kMaxLength) return {};
  for (const std::string& name : names) {
    const std::size_t distance = DistanceBetween(word, name);
    if (distance >= least) continue;
    least = distance;
    nearest = &name;
  }
  return nearest ? "; did you mean " + *nearest + "?" : std::string();
}

}  // namespace sabxml::cli
