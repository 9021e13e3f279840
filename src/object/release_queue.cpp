#include "object/release_queue.h"

#include <memory>
#include <new>
#include <utility>

namespace sab {

thread_local ReleaseQueue::State ReleaseQueue::state_ = {};

bool ReleaseQueue::Postpone(State& state, const Pending& pending) noexcept {
  try {
    if (!state.waiting) state.waiting = new std::vector<Pending>;
    state.waiting->push_back(pending);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void ReleaseQueue::Destroy(void* object, Destructor destroy) noexcept {
  State& state = state_;
  // Without memory to remember the object, nesting deeper is the lesser evil.
  if (state.depth >= kMaxDepth && Postpone(state, {object, destroy})) return;
  ++state.depth;
  destroy(object);
  if (state.depth == 1) {
    while (state.waiting && !state.waiting->empty()) {
      const Pending next = state.waiting->back();
      state.waiting->pop_back();
      next.destroy(next.object);
    }
    delete std::exchange(state.waiting, nullptr);
  }
  --state.depth;
}

}  // namespace sab
