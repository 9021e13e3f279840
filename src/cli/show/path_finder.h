#pragma once

#include <map>
#include <string>
#include <vector>

namespace sabxml::cli {

/// Finds the files that descriptors name. Their paths are relative to the file that names them, and
/// were written on a system that takes backslashes and does not mind letter case.
class PathFinder {
 public:
  struct Found {
    std::string path;              ///< with slashes; what was looked for if there is no such file
    bool differs_in_case = false;  ///< the name on disk is not written as the descriptor has it
  };

  /// @param named_by the descriptor's own file
  Found Find(const std::string& named_by, const std::string& path);

 private:
  const std::vector<std::string>& NamesIn(const std::string& folder);
  /// The name on disk for a name in a folder; empty if there is none.
  std::string NameOnDisk(const std::string& folder, const std::string& name);

  std::map<std::string, std::vector<std::string>> names_;  // by folder
};

}  // namespace sabxml::cli
