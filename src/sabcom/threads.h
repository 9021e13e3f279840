#pragma once

#include <mutex>

namespace sabcom {

/// Whether this thread has entered the runtime.
bool IsThreadInitialized();

/// A moment in which no other thread is inside the runtime, and so none is in code of a component.
/// Threads that enter wait until it is over.
class QuietPoint {
 public:
  QuietPoint();

  /// False if another thread is inside; nothing may be concluded then.
  explicit operator bool() const { return is_quiet_; }

 private:
  std::unique_lock<std::recursive_mutex> lock_;
  bool is_quiet_;
};

}  // namespace sabcom
