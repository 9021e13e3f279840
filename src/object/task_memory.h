#pragma once

#include <sabxml/com.h>

#include <new>

namespace sab {

/// Base of classes whose objects live in the component runtime's memory, where small blocks are
/// cheap.
class TaskMemory {
 public:
  static void* operator new(std::size_t size) {
    if (void* const memory = CoTaskMemAlloc(size)) return memory;
    throw std::bad_alloc();
  }
  static void operator delete(void* memory) noexcept { CoTaskMemFree(memory); }

 protected:
  TaskMemory() = default;
  ~TaskMemory() = default;
};

}  // namespace sab
