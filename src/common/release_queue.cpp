#include "common/release_queue.h"

#include <memory>
#include <new>
#include <utility>

namespace sab {

thread_local int ReleaseQueue::depth_ = 0;
thread_local std::vector<ReleaseQueue::Doomed>* ReleaseQueue::waiting_ = nullptr;

bool ReleaseQueue::Postpone(const Doomed& doomed) noexcept {
  try {
    if (!waiting_) waiting_ = new std::vector<Doomed>;
    waiting_->push_back(doomed);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void ReleaseQueue::Destroy(void* object, Destructor destroy) noexcept {
  // Without memory to remember the object, nesting deeper is the lesser evil.
  if (depth_ >= kDeepest && Postpone({object, destroy})) return;
  ++depth_;
  destroy(object);
  if (depth_ == 1) {
    while (waiting_ && !waiting_->empty()) {
      const Doomed next = waiting_->back();
      waiting_->pop_back();
      next.destroy(next.object);
    }
    delete std::exchange(waiting_, nullptr);
  }
  --depth_;
}

}  // namespace sab
