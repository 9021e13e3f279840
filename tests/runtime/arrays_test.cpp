// Arrays as only this runtime promises them.

#include <gtest/gtest.h>
#include <sabxml/com.h>

#include <limits>
#include <utility>

namespace sab::testing {
namespace {

TEST(Arrays, BoundsThatNoIndexReachesAreRefused) {
  constexpr LONG kMin = std::numeric_limits<LONG>::min();
  constexpr LONG kMax = std::numeric_limits<LONG>::max();
  std::pair<SAFEARRAYBOUND, bool> rows[] = {{{1, kMax}, true},           {{2, kMax}, false},
                                            {{0, kMin + 1}, true},       {{0, kMin}, false},
                                            {{0xFFFFFFFF, kMax}, false}, {{3, kMin}, true}};
  for (auto& [bound, is_valid] : rows) {
    SAFEARRAY* const array = SafeArrayCreate(VT_UI1, 1, &bound);
    EXPECT_EQ(is_valid, array != nullptr) << bound.cElements << ' ' << bound.lLbound;
    SafeArrayDestroy(array);
  }
}

TEST(Arrays, MayBeNestedDeeperThanTheStackIs) {
  VARIANT outer{};
  VARIANT copy{};
  for (int depth = 0; depth < 200000; ++depth) {
    SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, 2);
    ASSERT_NE(nullptr, array);
    static_cast<VARIANT*>(array->pvData)[depth % 2] = outer;
    outer.vt = VT_ARRAY | VT_VARIANT;
    outer.parray = array;
  }
  EXPECT_EQ(S_OK, VariantCopy(&copy, &outer));
  EXPECT_EQ(S_OK, VariantClear(&outer));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, VariantChangeType(&outer, &copy, 0, VT_BSTR));
  EXPECT_EQ(S_OK, SafeArrayDestroyData(copy.parray));
  EXPECT_EQ(S_OK, VariantClear(&copy));
}

}  // namespace
}  // namespace sab::testing
