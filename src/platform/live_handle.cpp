#include "platform/live_handle.h"

namespace sab::backend {

thread_local LiveHandle* LiveHandle::innermost_ = nullptr;

bool LiveHandle::IsLive(ULONG_PTR handle) noexcept {
  for (const LiveHandle* live = innermost_; live; live = live->outer_) {
    if (live->Is(handle)) return true;
  }
  return false;
}

}  // namespace sab::backend
