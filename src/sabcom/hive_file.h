#pragma once

#include <memory>
#include <optional>
#include <string>

#include "sabcom/hive.h"
#include "sabcom/hive_storage.h"

namespace sabcom {

/// The registry's file and what is known of it. Its users hold the lock of the registry; whatever
/// reads or writes the file raises HiveError.
class HiveFile {
 public:
  /// The one hive of the process.
  static HiveFile& Instance();

  /// What the file says now, or within a change what it will say.
  Key& Tree();
  /// A number of what Tree() said the last time, which no earlier state had.
  ULONGLONG Generation() const { return generation_; }

  /// Until the matching End, other processes wait and nothing reaches the file. Changes within
  /// another one are parts of it.
  void Begin();
  /// The tree to change; only after Begin.
  Key& TreeForChange();
  /// Writes the whole change as one step; on failure the file is as it was.
  void Keep();
  /// Ends a change. What was not kept by then is taken back, unless it is part of another one.
  void End() noexcept;

 private:
  void Read();

  std::string path_;
  std::unique_ptr<Key> tree_;
  FileIdentity read_from_;
  std::optional<HiveLock> lock_;
  int changes_ = 0;  // begun and not ended
  bool is_changed_ = false;
  ULONGLONG generation_ = 0;
};

/// A change for as long as this lives.
class HiveChange {
 public:
  explicit HiveChange(HiveFile& hive) : hive_(hive) { hive_.Begin(); }
  HiveChange(const HiveChange&) = delete;
  HiveChange& operator=(const HiveChange&) = delete;
  ~HiveChange() { hive_.End(); }

  Key& Tree() { return hive_.TreeForChange(); }
  void Keep() { hive_.Keep(); }

 private:
  HiveFile& hive_;
};

}  // namespace sabcom
