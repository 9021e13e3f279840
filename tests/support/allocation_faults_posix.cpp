#include "support/allocation_faults.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sabxml/com.h>

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

// The function in whose place the executable's comes: the C++ library's, or a sanitizer's.
template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void* operator new(std::size_t size) {
  static auto* const next = Next<void*(std::size_t)>("_Znwm");
  return MayAllocate(size) ? next(size) : throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  static auto* const next = Next<void*(std::size_t)>("_Znam");
  return MayAllocate(size) ? next(size) : throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept {
  static auto* const next = Next<void*(std::size_t, const std::nothrow_t&)>("_ZnwmRKSt9nothrow_t");
  return MayAllocate(size) ? next(size, tag) : nullptr;
}

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
