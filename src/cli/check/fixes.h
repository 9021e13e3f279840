#pragma once

#include <map>
#include <string>

#include "check/finding.h"

namespace sabxml::cli {

/// The bytes of the files that have fixes, with these applied. Files keep every other byte.
/// @param count receives how many places are changed
std::map<std::string, std::string> FixedFiles(const sab::project::Project& project,
                                              const sab::check::Findings& findings,
                                              std::size_t& count);

/// Lines that differ, with three around them, as "diff -u" prints them.
/// @param before,after the bytes of documents in any encoding
std::string DiffOf(const std::string& file, const std::string& before, const std::string& after);

}  // namespace sabxml::cli
