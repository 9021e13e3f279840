#pragma once

#include "support/open_descriptors.h"

namespace sab::testing {

/// Lets operator new, in the tests and in every library that they have loaded, and the memory of
/// the component runtime fail after a number of calls that succeed; from then on all fail. It is so
/// for as long as an instance lives, which expects that no descriptor is left open.
class AllocationFaults {
 public:
  explicit AllocationFaults(long successes);
  AllocationFaults(const AllocationFaults&) = delete;
  AllocationFaults& operator=(const AllocationFaults&) = delete;
  ~AllocationFaults();

  bool HasStruck() const;

 private:
  OpenDescriptors descriptors_;
};

}  // namespace sab::testing
