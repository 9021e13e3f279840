#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sab::text {

/// How many letters of ASCII or bytes to add, leave out, replace or swap with their neighbour make
/// one word the other (optimal string alignment). Letter case does not matter.
std::size_t EditDistance(std::string_view a, std::string_view b);

/// What words are nearest to one.
struct Nearest {
  std::string_view word;  ///< the first of the nearest; empty where none is near
  bool is_only = false;   ///< no other word is as near
};

/// How many letters may differ in a misspelt word: a third of them, at most four.
std::size_t MostDifferences(std::string_view word);

/// Of the words that a word may be a misspelling of, the nearest.
Nearest FindNearest(std::string_view word, const std::vector<std::string_view>& words);
/// The same with another limit on how much may differ.
Nearest FindNearest(std::string_view word, const std::vector<std::string_view>& words,
                    std::size_t most);

/// The word that another may be a misspelling of, as a question that ends a message:
/// "; did you mean show?". Where no word is near, what else may help; empty without that. Letter
/// case does not matter.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& words,
                       const std::string& otherwise = {});
/// The same with another limit on how much may differ.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& words,
                       const std::string& otherwise, std::size_t most);

}  // namespace sab::text
