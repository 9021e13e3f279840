#pragma once

#include <atomic>

namespace sab {

/// Counts what keeps the library in the process: live objects and locks of class factories.
class ModuleLocks {
 public:
  static void Add() noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
  static void Remove() noexcept { count_.fetch_sub(1, std::memory_order_acq_rel); }
  static long Count() noexcept { return count_.load(std::memory_order_acquire); }

 private:
  static inline std::atomic<long> count_{0};
};

/// Base of every object that the library hands out: one lock for its lifetime.
class LiveObject {
 public:
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;

 protected:
  LiveObject() noexcept { ModuleLocks::Add(); }
  ~LiveObject() { ModuleLocks::Remove(); }
};

}  // namespace sab
