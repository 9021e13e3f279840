#include "xml/repaired_text.h"

#include <algorithm>

#include "xml/repairer.h"

namespace sab::xml {

RepairedText::RepairedText(std::string_view text) {
  const Repairer repairer(text);
  std::size_t done = 0;
  for (const Repairer::Insertion& insertion : repairer.Insertions()) {
    text_.append(repairer.Text(), done, insertion.at - done);
    done = insertion.at;
    insertions_.push_back({insertion.at, text_.size(), insertion.text.size()});
    text_ += insertion.text;
  }
  text_.append(repairer.Text(), done);
}

std::size_t RepairedText::ToOriginal(std::size_t repaired) const {
  const auto after =
      std::ranges::upper_bound(insertions_, repaired, {}, &RepairedText::Insertion::repaired);
  if (after == insertions_.begin()) return repaired;
  const Insertion& last = *(after - 1);
  const std::size_t end = last.repaired + last.size;
  return repaired <= end ? last.original : last.original + (repaired - end);
}

std::size_t RepairedText::FromOriginal(std::size_t original) const {
  const auto after =
      std::ranges::lower_bound(insertions_, original, {}, &RepairedText::Insertion::original);
  if (after == insertions_.begin()) return original;
  const Insertion& last = *(after - 1);
  return last.repaired + last.size + (original - last.original);
}

}  // namespace sab::xml
