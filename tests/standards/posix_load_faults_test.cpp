#include <gtest/gtest.h>

#include "standards/described_catalogue.h"
#include "support/allocation_faults.h"

namespace sab::testing {
namespace {

// A revision whose class cannot be created is passed over, but not one for which there is no
// memory.
TEST(CatalogueFaults, WhatIsLoadedWithoutMemoryIsNeverHalfLoaded) {
  const Bstr file(FromUtf8(SAB_SAMPLES "/standards/catalogue.xml"));
  long failures = 0;
  const LateObject whole("VeStandardCfgParser");
  EXPECT_EQ(S_OK, whole.As<IVeStandardCfgParser>()->Load(file.Get()));
  for (long successes = 0;; ++successes) {
    const LateObject object("VeStandardCfgParser");
    const auto parser = object.As<IVeStandardCfgParser>();
    HRESULT result = S_OK;
    bool has_struck = false;
    {
      const AllocationFaults faults(successes);
      result = parser->Load(file.Get());
      has_struck = faults.HasStruck();
    }
    if (SUCCEEDED(result)) {
      ASSERT_EQ(Described(whole), Described(object)) << successes;
    } else {
      ASSERT_EQ(E_OUTOFMEMORY, result) << successes << ": " << TakeErrorDescription();
      ++failures;
    }
    if (!has_struck) break;
  }
  EXPECT_GT(failures, 100);
}

TEST(CatalogueFaults, TheNameOfTheStandardIsToldOrThereIsNoMemory) {
  const LateObject whole("VeStandardCfgParser");
  ASSERT_EQ(S_OK, whole.Call("Load", {SAB_SAMPLES "/standards/catalogue.xml"}));
  const LateObject standard = whole.Follow("GetStandardParserColl [0]");
  const auto symbol = standard.Follow("GetSymbolParserColl [0]").As<IVeStdSymbolParser>();
  Bstr name;
  const AllocationFaults faults(0);
  EXPECT_EQ(E_OUTOFMEMORY, symbol->GetAttachStdName(name.Put()));
}

}  // namespace
}  // namespace sab::testing
