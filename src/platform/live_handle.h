#pragma once

#include <sabxml/com.h>

namespace sab::backend {

/// A handle of an element that was handed out, while the call that received it runs. Handles belong
/// to a thread and nest as its calls do. A number that a client passes as a handle is looked up
/// here before anything is read through it.
class LiveHandle {
 public:
  LiveHandle(const LiveHandle&) = delete;
  LiveHandle& operator=(const LiveHandle&) = delete;

  /// The one handed out last on this thread; null outside of such calls.
  static LiveHandle* Innermost() { return innermost_; }
  static bool IsLive(ULONG_PTR handle) noexcept;

 protected:
  LiveHandle() : outer_(innermost_) { innermost_ = this; }
  virtual ~LiveHandle() { innermost_ = outer_; }

  virtual bool Is(ULONG_PTR handle) const noexcept = 0;

 private:
  // A plain pointer: the thread may outlive the library.
  static thread_local LiveHandle* innermost_;

  LiveHandle* const outer_;
};

}  // namespace sab::backend
