#pragma once

#include <cerrno>
#include <functional>

#include "support/open_descriptors.h"

namespace sab::testing {

/// What happens to a file call in place of its work.
struct FileFault {
  const char* name;
  int error;             ///< the call does nothing and fails with it; 0 for none
  std::size_t most = 0;  ///< without an error: read and write transfer no more bytes than this
};

/// The faults that a file call is tried with, one after the other.
inline constexpr FileFault kFileFaults[] = {{"EIO", EIO},       {"ENOSPC", ENOSPC},
                                            {"EACCES", EACCES}, {"EINTR", EINTR},
                                            {"short", 0, 1},    {"nothing written", 0}};

/// Lets one file call of the process, in the tests and in every library that they have loaded, go
/// wrong after a number of calls that work; the next ones work again. It is so for as long as an
/// instance lives, which expects that no descriptor is left open. To try every call in turn, begin
/// with 0 and end when none is reached.
class FileFaults {
 public:
  FileFaults(long successes, const FileFault& fault);
  FileFaults(const FileFaults&) = delete;
  FileFaults& operator=(const FileFaults&) = delete;
  ~FileFaults();

  /// Whether there were so many calls that one went wrong.
  bool IsReached() const;
  /// The name of that call; "none" before it.
  const char* Call() const;

 private:
  OpenDescriptors descriptors_;
};

/// Runs an action in a child process that kills itself when it comes to a file call, after a number
/// of calls that work; of a write that it comes to, half is done.
/// @return whether it came so far; otherwise the child did the whole action
bool IsKilledAtFileCall(long successes, const std::function<void()>& action);

}  // namespace sab::testing
