#pragma once

#include <sabxml/com.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <utility>

#include "base/text.h"

namespace sab {

// What reading, locking and replacing files share.

/// What an error number of the system means, for people.
std::string Words(int error);

/// The result code that Windows has for the same reason.
HRESULT ResultOf(int error);

/// The path under which the system knows a name. A backslash is a legal character of a POSIX file
/// name, so it counts as a separator only where the name as written does not exist.
std::string PathOf(TextView name);

/// Opens a file that another program could have replaced by a pipe, which is not waited for.
/// @return a descriptor, or -1 and errno
int OpenWithoutWaiting(const char* path, int flags);

/// Reads an open file from where it is; otherwise as ReadFileBytes.
std::optional<std::string> ReadBytes(int file, std::string& reason);

/// Locks an open file, of any process and thread, for as long as its description is open. Readers
/// do not ask for the lock. Programs under Wine respect it, too.
/// @return 0; EAGAIN where another has the lock; any other error number
int TryLock(int file);

/// Whether an error of TryLock says that the file system has no locks.
bool HasNoLocks(int error);

class OpenFile {
 public:
  explicit OpenFile(int file) : file_(file) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (file_ >= 0) close(file_);
  }

  int Get() const { return file_; }
  int Detach() { return std::exchange(file_, -1); }

 private:
  int file_;
};

}  // namespace sab
