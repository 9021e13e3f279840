#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "server/registration.h"
#include "support/scratch_registry.h"

namespace sab::testing {

/// Steps on the registry file while something goes wrong: it is as before or complete, and the next
/// step succeeds.
class RegistrationFaults : public ::testing::Test {
 protected:
  enum Step { kRegister, kUnregister, kWrite, kRemove };

  // The long form takes every step and class.
  RegistrationFaults()
      : is_long_(std::getenv("SAB_TORTURE") != nullptr),
        steps_(kSteps, is_long_ ? 4 : 2),
        classes_(is_long_ ? ClassTable() : ClassTable().first(3)) {}

  HRESULT Act(Step step) const {
    if (step == kRegister) return RegisterServer(classes_, RegistrationScope::kMachine);
    if (step == kUnregister) return UnregisterServer(classes_, RegistrationScope::kMachine);
    HKEY key = nullptr;
    const LSTATUS status = step == kWrite ? RegCreateKeyExW(HKEY_USERS, OLESTR("A\\B"), 0, nullptr,
                                                            0, KEY_WRITE, nullptr, &key, nullptr)
                                          : RegDeleteTreeW(HKEY_USERS, OLESTR("A"));
    if (key) RegCloseKey(key);
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  }

  // Brings the registry to where a step starts, and learns what it makes of it.
  void Prepare(Step step) {
    registry_.folder.Write("registry.reg",
                           "Windows Registry Editor Version 5.00\n\n"
                           "[HKEY_CLASSES_ROOT\\SabXmlParser.VeTmplParser]\n\"Theirs\"=\"kept\"\n");
    if (step == kUnregister || step == kRemove) {
      ASSERT_EQ(S_OK, Act(step == kRemove ? kWrite : kRegister));
    }
    before_ = Read();
    ASSERT_EQ(S_OK, Act(step));
    after_ = Read();
    ASSERT_NE(before_, after_);
    EXPECT_NE(std::string::npos, after_.find("\"Theirs\"=\"kept\"\n")) << after_;
    registry_.folder.Write("registry.reg", before_);
  }

  // What a step must leave; brings the registry back to where it starts.
  void Check(HRESULT result) {
    EXPECT_EQ(SUCCEEDED(result) ? after_ : before_, Read());
    EXPECT_EQ(2U, registry_.folder.Entries().size());  // with the lock
    SetErrorInfo(0, nullptr);
    registry_.folder.Write("registry.reg", before_);
  }

  std::string Read() const { return registry_.folder.Read("registry.reg"); }

  static constexpr Step kSteps[] = {kRegister, kRemove, kUnregister, kWrite};
  ScratchRegistry registry_;
  const bool is_long_;
  const std::span<const Step> steps_;
  const std::span<const ClassEntry> classes_;
  std::string before_;
  std::string after_;
};

}  // namespace sab::testing
