#include "server/registration_steps.h"
#include "support/file_faults.h"

namespace sab::testing {
namespace {

TEST_F(RegistrationFaults, EveryFileCallMayFailOrBeTheLast) {
  int failures = 0;
  int kills = 0;
  for (const Step step : steps_) {
    Prepare(step);
    for (const FileFault& fault : kFileFaults) {
      bool is_reached = true;
      for (long calls = 0; is_reached && !HasFailure(); ++calls) {
        HRESULT result = S_OK;
        std::string call;
        {
          const FileFaults faults(calls, fault);
          result = Act(step);
          is_reached = faults.IsReached();
          call = faults.Call();
        }
        SCOPED_TRACE(std::to_string(step) + " " + fault.name + " of " + call);
        Check(result);
        if (FAILED(result)) ++failures;
      }
    }
    for (long calls = 0; IsKilledAtFileCall(calls, [&] { Act(step); }); ++calls) {
      SCOPED_TRACE(std::to_string(step) + " killed at " + std::to_string(calls));
      const std::string found = Read();
      EXPECT_TRUE(found == before_ || found == after_);
      if (found == before_) Check(Act(step));
      registry_.folder.Write("registry.reg", before_);
      ++kills;
    }
  }
  EXPECT_GT(failures, 50);
  EXPECT_GT(kills, 20);
  std::printf("counted: %d steps on the registry with a failing file call\n", failures);
  std::printf("counted: %d steps on the registry killed at a file call\n", kills);
}

}  // namespace
}  // namespace sab::testing
