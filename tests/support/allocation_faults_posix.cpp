#include "support/allocation_faults.h"

#include <gtest/gtest.h>
#include <sabxml/com.h>

#include <cstdlib>
#include <new>

#include "support/open_descriptors.h"

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

}  // namespace

// All of them, so that a sanitizer sees a block taken and given back by the same pair of functions.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return MayAllocate(size) ? std::malloc(size != 0 ? size : 1) : nullptr;
}
void* operator new(std::size_t size) {
  if (void* const block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace sab::testing {

long WithEachAllocationFailing(const std::function<void()>& act,
                               const std::function<void(bool has_failed)>& check) {
  for (long failures = 0;; ++failures) {
    SCOPED_TRACE("allocations that succeed: " + std::to_string(failures));
    const OpenDescriptors descriptors;
    has_struck = false;
    allocations_until_failure = failures;
    SabComFilterAllocations(MayAllocate);
    act();
    allocations_until_failure = kNever;
    SabComFilterAllocations(nullptr);
    descriptors.ExpectNoMore();
    check(has_struck);
    if (!has_struck || ::testing::Test::HasFailure()) return failures;
  }
}

}  // namespace sab::testing
