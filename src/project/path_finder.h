#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace sab::project {

/// A path in UTF-8 for the system, and back, with slashes.
std::filesystem::path PathOf(std::string_view utf8);
std::string TextOf(const std::filesystem::path& path);

/// Whether a path starts at a root, of a drive or of a share: with a slash of either kind or a
/// drive.
bool IsAbsolute(std::string_view path);

/// A path from its root on, without "." and "..", by which two spellings are the same file.
/// Symbolic links are not followed.
std::string FullPathOf(const std::string& path);

/// Finds the files that descriptors name. Their paths are relative to the file that names them, and
/// were written on a system that takes backslashes and does not mind letter case.
class PathFinder {
 public:
  struct Found {
    std::string path;              ///< with slashes; what was looked for if there is no such file
    bool exists = false;           ///< every folder on the way and the file itself are listed
    bool differs_in_case = false;  ///< the name on disk is not written as the descriptor has it
  };

  /// @param named_by the descriptor's own file
  Found Find(const std::string& named_by, const std::string& path);

 private:
  // The names in a folder.
  struct Listing {
    bool is_complete = false;
    std::set<std::string> names;
    std::map<std::string, std::string> by_folded;  // the first of those that differ in case only
  };

  const Listing& ListingOf(const std::string& folder);
  /// The name on disk for a name in a folder; empty if there is none.
  std::string NameOnDisk(const std::string& folder, const std::string& name);

  std::map<std::string, Listing> listings_;  // by folder
};

}  // namespace sab::project
