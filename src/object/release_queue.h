#pragma once

#include <vector>

namespace sab {

/// Destroys objects whose last reference is gone without ever nesting deeper than a small bound:
/// releasing a chain of a million objects must not exhaust the host's stack.
class ReleaseQueue {
 public:
  using Destructor = void (*)(void* object);

  /// Destroys the object now, or, deep inside other destructions, when those have returned.
  static void Destroy(void* object, Destructor destroy) noexcept;

 private:
  struct Pending {
    void* object;
    Destructor destroy;
  };

  static constexpr int kMaxDepth = 32;

  // Plain values: a thread may outlive the library, so nothing may need destruction at its end.
  struct State {
    int depth;
    std::vector<Pending>* waiting;
  };
  static thread_local State state_;

  static bool Postpone(State& state, const Pending& pending) noexcept;
};

}  // namespace sab
