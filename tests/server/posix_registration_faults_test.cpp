#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "server/registration.h"
#include "support/allocation_faults.h"
#include "support/file_faults.h"
#include "support/scratch_registry.h"

namespace sab::testing {
namespace {

// Steps on the registry file while something goes wrong: it is as before or complete, and the next
// step succeeds.
class RegistrationFaults : public ::testing::Test {
 protected:
  enum Step { kRegister, kUnregister, kWrite, kRemove };

  static HRESULT Act(Step step, std::span<const ClassEntry> classes) {
    if (step == kRegister) return RegisterServer(classes, RegistrationScope::kMachine);
    if (step == kUnregister) return UnregisterServer(classes, RegistrationScope::kMachine);
    HKEY key = nullptr;
    const LSTATUS status = step == kWrite ? RegCreateKeyExW(HKEY_USERS, OLESTR("A\\B"), 0, nullptr,
                                                            0, KEY_WRITE, nullptr, &key, nullptr)
                                          : RegDeleteTreeW(HKEY_USERS, OLESTR("A"));
    if (key) RegCloseKey(key);
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  }

  // Brings the registry to where each step starts, learns what it makes of it, and tries it.
  // @param try_all takes the step as an action, and its check
  template <class TryAll>
  void ForEachStep(std::span<const ClassEntry> classes, const TryAll& try_all) {
    for (const Step step : {kRegister, kUnregister, kWrite, kRemove}) {
      SCOPED_TRACE("step " + std::to_string(step));
      Restore(
          "Windows Registry Editor Version 5.00\n\n"
          "[HKEY_CLASSES_ROOT\\SabXmlParser.VeTmplParser]\n\"Theirs\"=\"kept\"\n");
      if (step == kUnregister) Act(kRegister, classes);
      if (step == kRemove) Act(kWrite, classes);
      before_ = Read();
      ASSERT_EQ(S_OK, Act(step, classes));
      after_ = Read();
      ASSERT_NE(before_, after_);
      EXPECT_NE(std::string::npos, after_.find("\"Theirs\"=\"kept\"\n")) << after_;
      Restore(before_);
      try_all([=, this] { result_ = Act(step, classes); },
              [this] {
                if (FAILED(result_)) ++failures_;
                EXPECT_EQ(SUCCEEDED(result_) ? after_ : before_, Read());
                EXPECT_EQ(2U, registry_.folder.Entries().size());  // with the lock
                SetErrorInfo(0, nullptr);
                Restore(before_);
              });
    }
  }

  std::string Read() const { return registry_.folder.Read("registry.reg"); }
  void Restore(const std::string& text) const { registry_.folder.Write("registry.reg", text); }

  ScratchRegistry registry_;
  std::string before_;
  std::string after_;
  HRESULT result_ = S_OK;
  int failures_ = 0;
};

TEST_F(RegistrationFaults, EveryFileCallMayFailOrBeTheLast) {
  long kills = 0;
  const bool is_long = std::getenv("SAB_TORTURE") != nullptr;
  ForEachStep(is_long ? ClassTable() : ClassTable().first(3),
              [&](const auto& act, const auto& check) {
                WithEachFileCallFailing(act, check);
                kills += KilledAtEachFileCall(act, [&] {
                  const std::string found = Read();
                  EXPECT_TRUE(found == before_ || found == after_);
                  if (found == before_) {
                    act();
                    check();
                  }
                  Restore(before_);
                });
              });
  EXPECT_GT(failures_, 50);
  EXPECT_GT(kills, 20);
  std::printf("counted: %d steps on the registry with a failing file call\n", failures_);
  std::printf("counted: %ld steps on the registry killed at a file call\n", kills);
}

// Every further class allocates the same once more.
TEST_F(RegistrationFaults, EveryAllocationMayFail) {
  ForEachStep(ClassTable().first(2), [&](const auto& act, const auto& check) {
    WithEachAllocationFailing(act, [&](bool has_failed) {
      EXPECT_TRUE(has_failed || result_ == S_OK);
      EXPECT_TRUE(SUCCEEDED(result_) || result_ == E_OUTOFMEMORY) << result_;
      check();
    });
  });
  EXPECT_GT(failures_, 50);
  std::printf("counted: %d steps on the registry without memory\n", failures_);
}

}  // namespace
}  // namespace sab::testing
