#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/text.h"

namespace sab {

/// Keeps all other writers, of this process and of others, away from a file between reading and
/// replacing it. Readers are not kept away. The system gives the lock back when a process ends,
/// however it ends, and nothing stays in the folder.
class FileLock {
 public:
  /// Waits for the lock for ten seconds. A file that does not exist needs none. Raises ComError:
  /// HRESULT_FROM_WIN32(ERROR_LOCK_VIOLATION) if another writer still has it then, otherwise the
  /// code of the system for why the file cannot be opened for writing.
  explicit FileLock(TextView name);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  /// Reads the file that is locked, or would be; as ReadFileBytes.
  std::optional<std::string> ReadBytes(TextView name, std::string& reason) const;

 private:
  static constexpr std::intptr_t kNone = -1;

  std::intptr_t file_ = kNone;
};

}  // namespace sab
