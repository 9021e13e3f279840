#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "sabcom/hive.h"

namespace sabcom {

// The bytes of the hive on the disk. All functions raise HiveError.

/// Tells whether a file is still the one that was read; of a missing file all is 0.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec modified{};
  timespec changed{};

  bool operator==(const FileIdentity& other) const;
};

/// Where the registry is, from the environment; of a program that runs with the rights of another
/// user the environment does not count.
std::string HivePath();

FileIdentity IdentifyHive(const std::string& path);

/// Reads a regular file that no other user, root aside, can have written.
/// @param identity receives that of the file which was read
/// @return nothing for a missing file
std::optional<std::string> ReadHive(const std::string& path, FileIdentity& identity);

/// The right to write a hive, which one process has at a time; another one waits for some seconds.
class HiveLock {
 public:
  /// @param path the folder is made when it is missing; links are followed
  explicit HiveLock(const std::string& path);
  HiveLock(const HiveLock&) = delete;
  HiveLock& operator=(const HiveLock&) = delete;
  ~HiveLock();

  /// Puts new text in the place of the hive as one step; on failure it is as it was. Mode and owner
  /// stay, and a link stays one.
  void Replace(std::string_view text) const;

 private:
  std::string target_;  // after links
  int file_ = -1;
};

}  // namespace sabcom
