// Late binding as clients of any language use it.

#include "automation/dispatch.h"

#include <gtest/gtest.h>

#include "generated/dispatch_tables.h"
#include "server/created_object.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

ComPtr<IDispatch> Administration() { return Created<IDispatch>(CLSID_VeAutoUpdateAdminCfgParser); }
ComPtr<IDispatch> Collection() { return Created<IDispatch>(CLSID_VePrsAccelColl); }
ComPtr<IDispatch> Accel() { return Created<IDispatch>(CLSID_VePrsAccel); }

TEST(Dispatch, NamesAreFoundWhateverTheirCaseAndTheirNeighbours) {
  const struct {
    std::vector<const OLECHAR*> names;  // of a member and its parameters
    std::vector<DISPID> ids;
    HRESULT result;
  } rows[] = {
      {{OLESTR("fIND")}, {24}, S_OK},
      {{OLESTR("Find"), OLESTR("I_PITEM"), OLESTR("o_pPos")}, {24, 0, 2}, S_OK},
      {{OLESTR("Find"), OLESTR("nobody"), OLESTR("i_posStart")}, {24, -1, 1}, DISP_E_UNKNOWNNAME},
      {{OLESTR("Nothing"), OLESTR("i_pItem")}, {-1, -1}, DISP_E_UNKNOWNNAME},
  };
  const auto names_of = [](const auto& names) { return const_cast<LPOLESTR*>(names.data()); };
  for (const auto& row : rows) {
    std::vector<DISPID> ids(row.names.size(), 77);
    EXPECT_EQ(row.result,
              Collection()->GetIDsOfNames(IID_NULL, names_of(row.names),
                                          static_cast<UINT>(ids.size()), 0, ids.data()));
    EXPECT_EQ(row.ids, ids);
  }
  // A member of the base interface, far above those of the derived one.
  const std::vector<const OLECHAR*> load{OLESTR("LOAD")};
  DISPID id = 0;
  EXPECT_EQ(S_OK, Administration()->GetIDsOfNames(IID_NULL, names_of(load), 1, 0, &id));
  EXPECT_EQ(0x7FFF0002, id);
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE,
            Administration()->GetIDsOfNames(IID_IDispatch, names_of(load), 1, 0, &id));
}

TEST(Dispatch, ValuesAreCoercedToTheProperty) {
  constexpr DISPID kTruth = 1;
  constexpr DISPID kNumber = 3;
  const struct {
    DISPID id;
    LateValue given;
    HRESULT result;
    const char* value;  // -1 where none was put
  } rows[] = {
      {kNumber, LateValue(LONG{42}), S_OK, "42"},
      {kNumber, LateValue(" -7 "), S_OK, "-7"},
      {kNumber, LateValue(2.5), S_OK, "2"},
      {kNumber, LateValue("soon"), DISP_E_TYPEMISMATCH, "-1"},
      {kNumber, LateValue(1e10), DISP_E_OVERFLOW, "-1"},
      {kNumber, LateValue::Of(Accel().Get()), DISP_E_TYPEMISMATCH, "-1"},
      {kTruth, LateValue(LONG{5}), S_OK, "-1"},
      {kTruth, LateValue("True"), S_OK, "-1"},
  };
  for (const auto& row : rows) {
    const auto object = Administration();
    const LateResult put = client::Invoke(*object, row.id, DISPATCH_PROPERTYPUT, {row.given});
    EXPECT_EQ(row.result, put.code) << row.value;
    EXPECT_EQ(FAILED(row.result) ? 0U : LateResult::kNoArgument, put.bad_argument);
    const LateResult got = client::Invoke(*object, row.id, DISPATCH_PROPERTYGET | DISPATCH_METHOD);
    EXPECT_EQ(row.id == kTruth ? VT_BOOL : VT_I4, got.value.Get().vt);
    EXPECT_EQ(row.value, got.value.Text());
  }
}

TEST(Dispatch, CallsThatDoNotFitGetTheirCode) {
  const auto collection = Collection();
  const LateValue list = LateValue::Of(collection.Get());
  const LateValue accel = LateValue::Of(Accel().Get());
  const LateValue one(LONG{1});
  const LateValue missing = LateValue::Missing();
  // A place of 32 bits is wide enough for a position where that has no more itself.
  constexpr bool kIsWide = sizeof(LONG_PTR) == 8;
  LONG narrow = 7;
  BSTR text = nullptr;
  LateValue circle;
  *circle.Put() = LateValue::Reference(VT_VARIANT, circle.Put()).Get();
  const LateValue narrow_place = LateValue::Reference(VT_I4, &narrow);
  const LateValue text_place = LateValue::Reference(VT_BSTR, &text);
  const LateValue no_place = LateValue::Reference(kSignedPointer, nullptr);
  constexpr HRESULT kNarrow = kIsWide ? DISP_E_OVERFLOW : S_OK;
  constexpr UINT kNone = LateResult::kNoArgument;
  constexpr DISPID kGetCount = 1, kAddHead = 9, kAddTail = 13, kGetAt = 19, kFind = 24;
  const struct {
    const char* name;
    DISPID id;
    std::vector<LateValue> arguments;
    HRESULT result;
    UINT bad_argument = kNone;
    WORD flags = DISPATCH_METHOD;
  } rows[] = {
      {"no such member", 99, {}, DISP_E_MEMBERNOTFOUND},
      {"no property", kGetCount, {}, DISP_E_MEMBERNOTFOUND, kNone, DISPATCH_PROPERTYGET},
      {"nor one to put", kGetCount, {one}, DISP_E_MEMBERNOTFOUND, kNone, DISPATCH_PROPERTYPUT},
      {"too few", kGetAt, {}, DISP_E_BADPARAMCOUNT},
      {"too many", kGetCount, {one}, DISP_E_BADPARAMCOUNT},
      {"an object of another kind", kAddHead, {list}, DISP_E_TYPEMISMATCH, 0},
      {"no object", kFind, {one, one, one}, DISP_E_TYPEMISMATCH, 2},
      {"missing but needed", kGetAt, {missing}, DISP_E_PARAMNOTOPTIONAL, 0},
      {"optional left out", kAddTail, {accel}, S_OK},
      {"a place by value", kAddTail, {accel, one}, S_OK},
      {"a place that is too narrow", kAddTail, {accel, narrow_place}, kNarrow, kIsWide ? 0 : kNone},
      {"a place for a text", kAddTail, {accel, text_place}, DISP_E_TYPEMISMATCH, 0},
      {"a place nowhere", kAddTail, {accel, no_place}, DISP_E_TYPEMISMATCH, 0},
      {"a circle of references", kAddTail, {accel, circle}, DISP_E_TYPEMISMATCH, 0},
      {"optional said to be missing", kAddTail, {accel, missing}, S_OK},
  };
  for (const auto& row : rows) {
    const LateResult outcome = client::Invoke(*collection, row.id, row.flags, row.arguments);
    EXPECT_EQ(row.result, outcome.code) << row.name;
    EXPECT_EQ(row.bad_argument, outcome.bad_argument) << row.name;
  }
  // What was refused was not done.
  EXPECT_EQ(kIsWide ? "3" : "4",
            client::Invoke(*collection, kGetCount, DISPATCH_METHOD).value.Text());
  VARIANT value = one.Get();
  DISPPARAMS unnamed{&value, nullptr, 1, 0};
  const auto invoke = [&](REFIID riid) {
    return accel.Get().pdispVal->Invoke(1, riid, 0, DISPATCH_PROPERTYPUT, &unnamed, nullptr,
                                        nullptr, nullptr);
  };
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, invoke(IID_IDispatch));
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, invoke(IID_NULL));
}

TEST(Dispatch, PositionsMoveOnInTheCallersVariable) {
  const auto collection = Collection();
  const LateValue accel = LateValue::Of(Accel().Get());
  // As a compiled client has it: a variable of the very type.
  LONGLONG place = 0;
  for (int i = 0; i < 2; ++i)
    client::Call(*collection, 13, DISPATCH_METHOD, {accel, LateValue::Reference(VT_I8, &place)});
  EXPECT_NE(0, place);
  // As a script has it: a variable that holds anything. Its type is always the same.
  constexpr VARTYPE kPosition = sizeof(LONG_PTR) == 8 ? VT_R8 : VT_I4;
  LateValue position = client::Call(*collection, 15, DISPATCH_METHOD);
  for (int left = 2; left > 0; --left) {
    EXPECT_EQ(kPosition, position.Get().vt);
    EXPECT_NE(0, position.Number());
    client::Call(*collection, 17, DISPATCH_METHOD,
                 {LateValue::Reference(VT_VARIANT, position.Put())});
  }
  EXPECT_EQ(kPosition, position.Get().vt);
  EXPECT_EQ(0, position.Get().llVal);
}

TEST(Dispatch, AFailingMemberTellsWhy) {
  const LateValue text("x.xml");
  const LateResult save =
      client::Invoke(*Administration(), 0x7FFF0001, DISPATCH_METHOD, {text, text});
  EXPECT_EQ(DISP_E_EXCEPTION, save.code);
  EXPECT_EQ(E_NOTIMPL, save.scode);
  EXPECT_EQ("SabXmlParser.VeAutoUpdateAdminCfgParser", save.source);
  EXPECT_EQ("The administration of the automatic update is read-only.", save.description);
  EXPECT_EQ("", TakeErrorDescription());  // it was handed over, not left behind
}

TEST(Dispatch, OneTypeInformationIsOfTheLibrary) {
  const auto object = Administration();
  UINT count = 0;
  EXPECT_EQ(S_OK, object->GetTypeInfoCount(&count));
  EXPECT_EQ(1U, count);
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(DISP_E_BADINDEX, object->GetTypeInfo(1, 0, info.Put()));
  ASSERT_EQ(S_OK, object->GetTypeInfo(0, 0, info.Put()));
  ComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, info->GetContainingTypeLib(library.Put(), nullptr));
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, library->GetLibAttr(&attributes));
  EXPECT_EQ(LIBID_SabXmlParserLib, attributes->guid);
  EXPECT_EQ(0x0804U, attributes->lcid);
  library->ReleaseTLibAttr(attributes);
}

}  // namespace
}  // namespace sab::testing
