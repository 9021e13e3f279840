#pragma once

#include <mutex>

namespace sabcom {

/// Whether this thread has entered the runtime.
bool IsThreadInitialized();

/// A moment in which no other thread is inside the runtime, and so none is in code of a component.
/// Threads that enter wait until it is over.
class QuiescentState {
 public:
  QuiescentState();

  /// False if another thread is inside; nothing may be concluded then.
  explicit operator bool() const { return is_quiescent_; }

 private:
  std::unique_lock<std::recursive_mutex> lock_;
  bool is_quiescent_;
};

}  // namespace sabcom
