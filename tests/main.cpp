// Sets the stage for all tests: the component runtime is entered, the server is registered, and
// after every test nothing of the server may be alive.

#include <SabXmlParser.h>
#include <gtest/gtest.h>

#include "support/registration_scope.h"
#include "support/server_library.h"

namespace {

// A leak is the fault of the test that made it, so it is looked for after each.
class NothingStaysAlive : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo&) override {
    if (sab::testing::Server().CanUnloadNow() != S_OK) {
      ADD_FAILURE() << "objects or locks of the server are still alive";
    }
  }
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (FAILED(CoInitialize(nullptr))) return 1;
  int failed = 1;
  {
    const sab::testing::RegistrationScope registration;
    testing::UnitTest::GetInstance()->listeners().Append(new NothingStaysAlive);
    failed = RUN_ALL_TESTS();
  }
  CoUninitialize();
  return failed;
}
