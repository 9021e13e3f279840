#include "object/release_queue.h"

#include <memory>
#include <new>
#include <utility>

namespace sab {

thread_local ReleaseQueue::State ReleaseQueue::state_ = {};

bool ReleaseQueue::Postpone(State& state, const Doomed& doomed) noexcept {
  try {
    if (!state.waiting) state.waiting = new std::vector<Doomed>;
    state.waiting->push_back(doomed);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void ReleaseQueue::Destroy(void* object, Destructor destroy) noexcept {
  State& state = state_;
  // Without memory to remember the object, nesting deeper is the lesser evil.
  if (state.depth >= kDeepest && Postpone(state, {object, destroy})) return;
  ++state.depth;
  destroy(object);
  if (state.depth == 1) {
    while (state.waiting && !state.waiting->empty()) {
      const Doomed next = state.waiting->back();
      state.waiting->pop_back();
      next.destroy(next.object);
    }
    delete std::exchange(state.waiting, nullptr);
  }
  --state.depth;
}

}  // namespace sab
