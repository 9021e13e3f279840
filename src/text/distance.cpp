#include "text/distance.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "text/ascii.h"

namespace sab::text {
namespace {

// Which letters a word has. Most words are told apart by them alone, at a fraction of the cost of
// their distance.
class Letters {
 public:
  explicit Letters(std::string_view word) : set_(SetOf(word)) {}

  // One letter that is added, left out or replaced changes two of the set at most.
  std::size_t LeastDistanceTo(std::string_view other) const {
    return static_cast<std::size_t>(std::popcount(set_ ^ SetOf(other)) + 1) / 2;
  }

 private:
  static std::uint64_t SetOf(std::string_view word) {
    std::uint64_t set = 0;
    for (const char c : word) {
      set |= std::uint64_t{1} << (static_cast<unsigned char>(ToLowerAscii(c)) % 64);
    }
    return set;
  }

  std::uint64_t set_;
};

}  // namespace

std::size_t EditDistance(std::string_view a, std::string_view b) {
  const auto is_same = [](char first, char second) {
    return ToLowerAscii(first) == ToLowerAscii(second);
  };
  // Three rows of the table are enough: the one that is filled, and two before it for swaps.
  std::vector<std::size_t> before_last(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t differs = is_same(a[i - 1], b[j - 1]) ? 0 : 1;
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + differs});
      const bool is_swapped =
          i > 1 && j > 1 && is_same(a[i - 1], b[j - 2]) && is_same(a[i - 2], b[j - 1]);
      if (is_swapped) row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
    std::swap(before_last, last);
    std::swap(last, row);
  }
  return last[b.size()];
}

std::size_t MostDifferences(std::string_view word) {
  return std::min<std::size_t>((word.size() + 2) / 3, 4);
}

Nearest FindNearest(std::string_view word, const std::vector<std::string_view>& words) {
  return FindNearest(word, words, MostDifferences(word));
}

Nearest FindNearest(std::string_view word, const std::vector<std::string_view>& words,
                    std::size_t most) {
  constexpr std::size_t kMaxLength = 100;  // the distance costs the square of it
  Nearest nearest;
  if (word.size() > kMaxLength) return nearest;
  std::size_t least = most + 1;
  const Letters letters(word);
  for (const std::string_view other : words) {
    const std::size_t shorter = std::min(word.size(), other.size());
    if (std::max(word.size(), other.size()) - shorter >= least + 1) continue;
    if (letters.LeastDistanceTo(other) > least) continue;
    const std::size_t distance = EditDistance(word, other);
    if (distance > least || (distance == least && nearest.word.empty())) continue;
    if (distance == least) {
      nearest.is_only = nearest.is_only && other == nearest.word;
      continue;
    }
    least = distance;
    nearest = {other, true};
  }
  return nearest;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& words,
                       const std::string& otherwise) {
  return DidYouMean(word, words, otherwise, MostDifferences(word));
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& words,
                       const std::string& otherwise, std::size_t most) {
  const std::string_view nearest = FindNearest(word, {words.begin(), words.end()}, most).word;
  if (!nearest.empty()) return "; did you mean " + std::string(nearest) + "?";
  return otherwise.empty() ? std::string() : "; " + otherwise;
}

}  // namespace sab::text
