// Lists as scripts walk them: Count, Item and For Each.

#include <gtest/gtest.h>

#include "common/accel_list.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

class ScriptListTest : public ::testing::Test {
 protected:
  ComPtr<IEnumVARIANT> Walk() {
    const LateResult walk =
        client::Invoke(*list_, DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
    ComPtr<IEnumVARIANT> enumerator;
    EXPECT_EQ(VT_UNKNOWN, walk.value.Get().vt);
    EXPECT_EQ(S_OK,
              walk.value.Get().punkVal->QueryInterface(IID_IEnumVARIANT, enumerator.PutVoid()));
    return enumerator;
  }

  // The keys of what an enumerator still gives.
  static std::string Rest(IEnumVARIANT& walk) {
    std::string keys;
    for (;;) {
      LateValue element;
      ULONG fetched = 0;
      if (walk.Next(1, element.Put(), &fetched) != S_OK || fetched != 1) return keys;
      keys += client::Get(*element.Get().pdispVal, "Key").Text();
    }
  }

  AccelList list_ = NewList("abc");
};

TEST_F(ScriptListTest, NamesInAnyCase) {
  const std::pair<const OLECHAR*, DISPID> rows[] = {{OLESTR("ITEM"), DISPID_VALUE},
                                                    {OLESTR("_newenum"), DISPID_NEWENUM}};
  for (const auto& [name, expected] : rows) {
    LPOLESTR names = const_cast<LPOLESTR>(name);
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(S_OK, list_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
    EXPECT_EQ(expected, id);
  }
}

TEST_F(ScriptListTest, ElementsByIndex) {
  constexpr auto kOutside = static_cast<HRESULT>(0x800A0009);  // error 9 of Visual Basic
  const std::string outside =
      "There is no element of this index: the collection has 3 elements, counted from 0.";
  const struct {
    LateValue index;
    HRESULT result;
    std::string said;  // the key or the failure
  } rows[] = {
      {LateValue(LONG{0}), S_OK, "a"},
      {LateValue("2"), S_OK, "c"},
      {LateValue(1.0), S_OK, "b"},
      {LateValue(LONG{3}), kOutside, outside},
      {LateValue(LONG{-1}), kOutside, outside},
      {LateValue("x"), DISP_E_TYPEMISMATCH, ""},
  };
  for (const auto& row : rows) {
    const LateResult item = client::Invoke(*list_, DISPID_VALUE, DISPATCH_PROPERTYGET, {row.index});
    EXPECT_EQ(row.result, item.Outcome());
    EXPECT_EQ(row.said, item.code == S_OK ? client::Get(*item.value.Get().pdispVal, "Key").Text()
                                          : item.description);
  }
  const LateValue index(LONG{0});
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, client::Invoke(*list_, DISPID_VALUE, DISPATCH_PROPERTYGET).code);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
            client::Invoke(*list_, DISPID_VALUE, DISPATCH_PROPERTYPUT, {index}).code);
}

TEST_F(ScriptListTest, WalksGoOnWhateverBecomesOfTheList) {
  const auto walk = Walk();
  ASSERT_TRUE(walk);
  EXPECT_EQ(S_OK, walk->Skip(1));
  EXPECT_EQ(S_OK, list_->RemoveAll());
  EXPECT_EQ(S_OK, list_->AddTail(NewAccel("z").Get(), nullptr));
  ComPtr<IEnumVARIANT> copy;
  ASSERT_EQ(S_OK, walk->Clone(copy.Put()));
  EXPECT_EQ("bc", Rest(*walk));
  EXPECT_EQ("bc", Rest(*copy));
  EXPECT_EQ(S_OK, copy->Reset());
  EXPECT_EQ("abc", Rest(*copy));
  EXPECT_EQ("z", Rest(*Walk()));
  list_.Reset();
  EXPECT_EQ(S_OK, walk->Reset());
  EXPECT_EQ("abc", Rest(*walk));
}

TEST_F(ScriptListTest, SeveralAtOnceAndPastTheEnd) {
  const auto walk = Walk();
  VARIANT elements[4] = {};
  ULONG fetched = 9;
  EXPECT_EQ(S_OK, walk->Skip(1));
  EXPECT_EQ(S_FALSE, walk->Next(4, elements, &fetched));
  ASSERT_EQ(2U, fetched);
  for (VARIANT& element : elements) VariantClear(&element);
  EXPECT_EQ(S_FALSE, walk->Next(1, elements, nullptr));
  EXPECT_EQ(S_OK, walk->Next(0, nullptr, nullptr));
  EXPECT_EQ(E_INVALIDARG, walk->Next(2, elements, nullptr));
  EXPECT_EQ(S_OK, walk->Reset());
  EXPECT_EQ(S_FALSE, walk->Skip(9));
}

}  // namespace
}  // namespace sab::testing
