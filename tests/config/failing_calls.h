#pragma once

#include <cerrno>

#include "platform/posix/file_calls.h"

namespace sab {

/// A call of the system that fails.
template <int kError, class Result, class... Arguments>
Result Fail(Arguments...) {
  errno = kError;
  return static_cast<Result>(-1);
}

/// Lets calls of the system fail for the lifetime of the object.
class FailingCalls {
 public:
  template <class Change>
  explicit FailingCalls(const Change& change) : saved_(CurrentFileCalls()) {
    change(CurrentFileCalls());
  }
  FailingCalls(const FailingCalls&) = delete;
  FailingCalls& operator=(const FailingCalls&) = delete;
  ~FailingCalls() { CurrentFileCalls() = saved_; }

 private:
  FileCalls saved_;
};

}  // namespace sab
