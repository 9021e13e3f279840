#pragma once

#include <sys/types.h>

namespace sab {

/// The system calls that replacing a file consists of. Tests put failing ones in their place to
/// prove that whatever call fails, the old file is whole and no temporary file stays.
struct FileCalls {
  ssize_t (*write)(int file, const void* bytes, std::size_t count);
  int (*fchown)(int file, uid_t owner, gid_t group);
  int (*fchmod)(int file, mode_t mode);
  int (*fsync)(int file);
  int (*close)(int file);
  int (*rename)(const char* from, const char* to);
};

/// The calls in use by this process; the system's own unless a test has changed them.
FileCalls& CurrentFileCalls();

}  // namespace sab
