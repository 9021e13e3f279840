#include "support/allocation_faults.h"

#include <sabxml/com.h>

#include <cstdlib>
#include <new>

namespace {

constexpr long kNever = -1;

// Allocations until one fails.
long allocations_until_failure = kNever;
bool has_struck = false;

BOOL MayAllocate(SIZE_T) {
  if (allocations_until_failure == 0) {
    has_struck = true;
    return FALSE;
  }
  if (allocations_until_failure > 0) --allocations_until_failure;
  return TRUE;
}

void* Allocate(std::size_t size) {
  if (!MayAllocate(size)) throw std::bad_alloc();
  if (void* const memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
// The sanitizers' own would not pass on to the one above.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return MayAllocate(size) ? std::malloc(size ? size : 1) : nullptr;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace sab::testing {

AllocationFaults::AllocationFaults(long successes) {
  allocations_until_failure = successes;
  has_struck = false;
  SabComFilterAllocations(MayAllocate);
}

AllocationFaults::~AllocationFaults() {
  allocations_until_failure = kNever;
  descriptors_.ExpectNoMore();
  SabComFilterAllocations(nullptr);
}

bool AllocationFaults::HasStruck() const { return has_struck; }

}  // namespace sab::testing
