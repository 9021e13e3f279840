#pragma once

#include <sabxml/com.h>

#include <string>
#include <utility>

#include "base/text.h"

namespace sab {

// What reading, locking and replacing files share.

/// What an error number of the system means, for people.
std::string Words(DWORD error);

inline HRESULT ResultOf(DWORD error) { return HRESULT_FROM_WIN32(error); }

/// The path under which the system knows a name.
Text PathOf(TextView name);

/// The full path of the file that is meant: the target of a symbolic link or junction, and the name
/// itself where nothing has it. ReplaceFileW of Wine takes no name without a folder.
Text FinalPathOf(Text path);

class OpenFile {
 public:
  explicit OpenFile(HANDLE file) : file_(file) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { Close(); }

  HANDLE Get() const { return file_; }
  bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }
  bool Close() { return !IsOpen() || CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE)) != 0; }

 private:
  HANDLE file_;
};

}  // namespace sab
