#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "check/finding.h"

namespace sab::check {

/// A part of a file of which a comment says "sabxml-ignore".
struct Suppressed {
  std::size_t from;
  std::size_t to;
  std::set<Mistake> mistakes;  ///< empty for all

  bool Covers(std::size_t offset, Mistake mistake) const {
    return offset >= from && offset < to && (mistakes.empty() || mistakes.contains(mistake));
  }
};

/// The elements, their content included, that follow comments "sabxml-ignore RULE", or without a
/// rule for all of them.
/// @param notes gets a text for each comment that names no rule; may be null
std::vector<Suppressed> SuppressedIn(const project::File& file, std::vector<std::string>* notes);

/// Takes away what is found in such parts.
void Suppress(const project::Project& project, Findings& findings);

}  // namespace sab::check
