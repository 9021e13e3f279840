#include <gtest/gtest.h>

#include "server/created_object.h"
#include "support/allocation_faults.h"

namespace sab::testing {
namespace {

// Revisions in all that a catalogue parser holds.
ULONG_PTR RevisionCount(IVeStandardCfgParser& parser) {
  ULONG_PTR all = 0;
  ComPtr<IVeStandardParserColl> standards;
  EXPECT_EQ(S_OK, parser.GetStandardParserColl(standards.Put()));
  LONG_PTR at = 0;
  for (standards->GetHeadPosition(&at); at != 0;) {
    ComPtr<IVeStandardParser> standard;
    ComPtr<IVeStdSymbolParserColl> symbols;
    if (FAILED(standards->GetNext(&at, standard.Put()))) break;
    EXPECT_EQ(S_OK, standard->GetSymbolParserColl(symbols.Put()));
    LONG_PTR place = 0;
    for (symbols->GetHeadPosition(&place); place != 0;) {
      ComPtr<IVeStdSymbolParser> symbol;
      ComPtr<IVeStdSymRevParserColl> revisions;
      ULONG_PTR count = 0;
      if (FAILED(symbols->GetNext(&place, symbol.Put()))) break;
      EXPECT_EQ(S_OK, symbol->GetRevParserColl(revisions.Put()));
      EXPECT_EQ(S_OK, revisions->GetCount(&count));
      all += count;
    }
  }
  return all;
}

// A revision whose class cannot be created is passed over, but not one for which there is no
// memory.
TEST(CatalogueFaults, WhatIsLoadedWithoutMemoryIsNeverHalfLoaded) {
  const Bstr file(FromUtf8(SAB_SAMPLES "/standards/catalogue.xml"));
  long failures = 0;
  for (long successes = 0;; ++successes) {
    const auto parser = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
    HRESULT result = S_OK;
    bool has_struck = false;
    {
      const AllocationFaults faults(successes);
      result = parser->Load(file.Get());
      has_struck = faults.HasStruck();
    }
    if (SUCCEEDED(result)) {
      ASSERT_EQ(9U, RevisionCount(*parser.Get())) << successes;
    } else {
      ASSERT_EQ(E_OUTOFMEMORY, result) << successes << ": " << TakeErrorDescription();
      ++failures;
    }
    if (!has_struck) break;
  }
  EXPECT_GT(failures, 100);
}

}  // namespace
}  // namespace sab::testing
