// Lists as scripts walk them: Count, Item and For Each.

#include <gtest/gtest.h>

#include "server/created_object.h"

namespace sab::testing {
namespace {

class ScriptListTest : public ::testing::Test {
 protected:
  ScriptListTest() {
    for (const char* key : {"F1", "F2", "F3"}) Add(key);
  }

  void Add(const char* key) {
    const auto item = Created<IVePrsAccel>(CLSID_VePrsAccel);
    item->put_Key(Bstr(FromUtf8(key)).Get());
    LONG_PTR position = 0;
    EXPECT_EQ(S_OK, list_->AddTail(item.Get(), &position));
  }

  HRESULT Call(DISPID member, WORD flags, VARIANT* result, std::vector<VARIANT> arguments = {}) {
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    EXCEPINFO exception{};
    const HRESULT outcome = list_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                          result, &exception, nullptr);
    Bstr source;
    Bstr description;
    source.Attach(exception.bstrSource);
    description.Attach(exception.bstrDescription);
    said_ = ToUtf8(description.View());
    return outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
  }

  ComPtr<IEnumVARIANT> Walk() {
    VARIANT result;
    VariantInit(&result);
    ComPtr<IEnumVARIANT> walk;
    EXPECT_EQ(S_OK, Call(DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &result));
    if (result.vt == VT_UNKNOWN) {
      EXPECT_EQ(S_OK, result.punkVal->QueryInterface(IID_IEnumVARIANT, walk.PutVoid()));
    }
    VariantClear(&result);
    return walk;
  }

  static std::string KeyOf(VARIANT& element) {
    ComPtr<IVePrsAccel> item;
    if (element.vt != VT_DISPATCH ||
        FAILED(element.pdispVal->QueryInterface(IID_IVePrsAccel, item.PutVoid()))) {
      return "?";
    }
    VariantClear(&element);
    return TextOf(*item.Get(), &IVePrsAccel::get_Key);
  }

  static std::string Rest(IEnumVARIANT& walk) {
    std::string keys;
    VARIANT element;
    ULONG fetched = 0;
    while (walk.Next(1, &element, &fetched) == S_OK && fetched == 1) keys += KeyOf(element) + ' ';
    return keys;
  }

  std::string said_;  // by the last call
  ComPtr<IVePrsAccelColl> list_ = Created<IVePrsAccelColl>(CLSID_VePrsAccelColl);
};

TEST_F(ScriptListTest, NamesInAnyCase) {
  const struct {
    const OLECHAR* name;
    DISPID id;
  } rows[] = {{OLESTR("ITEM"), DISPID_VALUE}, {OLESTR("_newenum"), DISPID_NEWENUM}};
  for (const auto& row : rows) {
    Text name = row.name;
    LPOLESTR names = name.data();
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(S_OK, list_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
    EXPECT_EQ(row.id, id);
  }
}

TEST_F(ScriptListTest, ElementsByIndex) {
  VARIANT index;
  VariantInit(&index);
  VARIANT result;
  const auto item = [&](VARTYPE type, double number) -> std::string {
    VariantInit(&result);
    index.vt = VT_R8;
    index.dblVal = number;
    VariantChangeType(&index, &index, 0, type);
    const HRESULT outcome = Call(DISPID_VALUE, DISPATCH_PROPERTYGET, &result, {index});
    VariantClear(&index);
    return outcome == S_OK ? KeyOf(result) : outcome == DISP_E_BADINDEX ? "none" : "failed";
  };
  EXPECT_EQ("F1", item(VT_I4, 0));
  EXPECT_EQ("F3", item(VT_BSTR, 2));
  EXPECT_EQ("F2", item(VT_R8, 1));
  EXPECT_EQ("none", item(VT_I4, 3));
  EXPECT_EQ("none", item(VT_I2, -1));
  EXPECT_EQ("There is no element of this index: the collection has 3 elements, counted from 0.",
            said_);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(DISPID_VALUE, DISPATCH_PROPERTYGET, &result));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Call(DISPID_VALUE, DISPATCH_PROPERTYPUT, &result, {index}));
}

TEST_F(ScriptListTest, WalksGoOnWhateverBecomesOfTheList) {
  const auto walk = Walk();
  ASSERT_TRUE(walk);
  VARIANT element;
  EXPECT_EQ(S_OK, walk->Next(1, &element, nullptr));
  EXPECT_EQ("F1", KeyOf(element));
  EXPECT_EQ(S_OK, list_->RemoveAll());
  Add("F9");
  ComPtr<IEnumVARIANT> copy;
  ASSERT_EQ(S_OK, walk->Clone(copy.Put()));
  EXPECT_EQ("F2 F3 ", Rest(*walk.Get()));
  EXPECT_EQ("F2 F3 ", Rest(*copy.Get()));
  EXPECT_EQ(S_OK, copy->Reset());
  EXPECT_EQ("F1 F2 F3 ", Rest(*copy.Get()));
  EXPECT_EQ("F9 ", Rest(*Walk().Get()));
  list_.Reset();
  EXPECT_EQ(S_OK, walk->Reset());
  EXPECT_EQ("F1 F2 F3 ", Rest(*walk.Get()));
}

TEST_F(ScriptListTest, SeveralAtOnceAndPastTheEnd) {
  const auto walk = Walk();
  VARIANT elements[4];
  ULONG fetched = 9;
  EXPECT_EQ(S_OK, walk->Skip(1));
  EXPECT_EQ(S_FALSE, walk->Next(4, elements, &fetched));
  ASSERT_EQ(2U, fetched);
  EXPECT_EQ("F2", KeyOf(elements[0]));
  EXPECT_EQ("F3", KeyOf(elements[1]));
  EXPECT_EQ(S_FALSE, walk->Next(1, elements, nullptr));
  EXPECT_EQ(S_OK, walk->Next(0, nullptr, nullptr));
  EXPECT_EQ(E_INVALIDARG, walk->Next(2, elements, nullptr));
  EXPECT_EQ(S_OK, walk->Reset());
  EXPECT_EQ(S_FALSE, walk->Skip(9));
}

}  // namespace
}  // namespace sab::testing
