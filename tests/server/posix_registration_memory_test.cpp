#include "server/registration_steps.h"
#include "support/allocation_faults.h"

namespace sab::testing {
namespace {

TEST_F(RegistrationFaults, EveryAllocationMayFail) {
  long failures = 0;
  for (const Step step : steps_) {
    Prepare(step);
    bool has_struck = true;
    // Late allocations are those of the first classes once more.
    for (long successes = 0; has_struck && !HasFailure();
         successes += is_long_ ? 1 + successes / 512 : 13) {
      HRESULT result = S_OK;
      {
        const AllocationFaults faults(successes);
        result = Act(step);
        has_struck = faults.HasStruck();
      }
      SCOPED_TRACE(std::to_string(step) + " " + std::to_string(successes));
      if (FAILED(result)) {
        EXPECT_EQ(E_OUTOFMEMORY, result);
        ++failures;
      }
      Check(result);
    }
  }
  EXPECT_GT(failures, 50);
  std::printf("counted: %ld steps on the registry without memory\n", failures);
}

}  // namespace
}  // namespace sab::testing
