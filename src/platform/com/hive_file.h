#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>

#include "platform/com/hive.h"

namespace sabcom {

/// The registry's file and what is known of it. Between Begin and End the tree may be used; the
/// file is read again when somebody else has written it, locked at the first change, and written at
/// End.
class HiveFile {
 public:
  /// The one hive of the process. Its users hold the lock of the registry.
  static HiveFile& Instance();

  /// Raises HiveError for a file that cannot be read.
  void Begin();
  /// In between: takes up what somebody else has written meanwhile.
  void Refresh();
  const Key& Tree() const { return *tree_; }
  Key& Tree() { return *tree_; }
  /// The tree for a change: other processes wait until End. May read the file again.
  Key& TreeForChange();
  /// Writes what was changed, as one step. Raises HiveError; the file is as it was then.
  void Flush();
  void End();

 private:
  struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};
  };

  static std::string DefaultPath();
  Identity IdentityOfFile() const;
  bool IsUnchanged(const Identity& now) const;
  void Read();
  void Lock();
  void Unlock();

  std::string path_;
  std::unique_ptr<Key> tree_;
  Identity read_from_;
  int lock_ = -1;
  bool is_changed_ = false;
};

}  // namespace sabcom
