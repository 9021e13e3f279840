// Automation values: one set of expectations for the system's runtime and for ours.

#include <gtest/gtest.h>
#include <sabxml/com.h>

#include <string>
#include <vector>

#include "base/bstr.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

LateValue Number(VARTYPE type, LONGLONG bits) {
  LateValue value;
  value.Put()->vt = type;
  value.Put()->llVal = bits;
  return value;
}

// The value as a text, or the failure.
std::string Converted(const LateValue& source, VARTYPE type, USHORT flags = 0) {
  LateValue result;
  const HRESULT outcome =
      VariantChangeType(result.Put(), const_cast<VARIANT*>(&source.Get()), flags, type);
  EXPECT_EQ(SUCCEEDED(outcome) ? type : VARTYPE{VT_EMPTY}, result.Get().vt);
  if (outcome == DISP_E_OVERFLOW) return "overflow";
  if (outcome == DISP_E_TYPEMISMATCH) return "mismatch";
  EXPECT_EQ(S_OK, outcome);
  return result.Text();
}

TEST(Values, ConvertAsTheDocumentationSays) {
  const struct {
    VARTYPE type;
    const char* expected;
    std::vector<LateValue> sources;
  } rows[] = {
      {VT_I4, "42", {LateValue("42")}},
      {VT_I4, "2", {LateValue("2.5"), LateValue(2.5)}},
      {VT_I4, "-4", {LateValue("  -4 "), LateValue(-3.5), LateValue("-3.5")}},
      {VT_I4, "1000", {LateValue("1e3")}},
      {VT_I4, "0", {LateValue()}},
      {VT_I4, "-1", {Number(VT_BOOL, -1)}},
      {VT_I4, "mismatch", {LateValue(""), LateValue("12abc"), Number(VT_NULL, 0)}},
      {VT_I4, "overflow", {LateValue("2147483648"), LateValue(2147483648.0)}},
      {VT_I8, "-1", {Number(VT_I4, -1)}},
      {VT_I8, "overflow", {LateValue(1e300)}},
      {VT_I2, "overflow", {Number(VT_I4, 70000)}},
      {VT_UI2, "overflow", {Number(VT_I4, -1)}},
      {VT_UI1, "overflow", {Number(VT_I4, 300)}},
      {VT_R8, "0.25", {LateValue("0.25")}},
      {VT_R8, "-1", {Number(VT_BOOL, -1)}},
      {VT_R4, "overflow", {LateValue(1e300)}},
      {VT_BOOL, "-1", {LateValue("true"), LateValue("#TRUE#"), LateValue("2"), Number(VT_I4, 7)}},
      {VT_BOOL, "0", {LateValue("False")}},
      {VT_BOOL, "mismatch", {LateValue("yes")}},
      {VT_BSTR, "0.1", {LateValue(0.1), Number(VT_R4, 0x3DCCCCCD)}},
      {VT_BSTR, "-2", {LateValue(-2.0)}},
      {VT_BSTR, "1E+20", {LateValue(1e20)}},
      {VT_BSTR, "-5", {Number(VT_I4, -5)}},
      {VT_BSTR, "-1", {Number(VT_BOOL, -1)}},
      {VT_BSTR, "", {LateValue()}},
      {VT_BSTR, "4000000000", {Number(VT_UI4, 4000000000LL)}},
      {VT_BSTR, "-9007199254740993", {Number(VT_I8, -9007199254740993LL)}},
  };
  for (const auto& row : rows) {
    for (const LateValue& source : row.sources) {
      EXPECT_EQ(row.expected, Converted(source, row.type))
          << row.type << " from " << source.Get().vt;
    }
  }
  EXPECT_EQ("True", Converted(Number(VT_BOOL, -1), VT_BSTR, VARIANT_ALPHABOOL));
}

TEST(Values, StringsKeepTheirLengthAndTheirZeros) {
  Bstr text(TextView(OLESTR("a\0b"), 3));
  EXPECT_EQ(3U, SysStringLen(text.Get()));
  EXPECT_EQ(6U, SysStringByteLen(text.Get()));
  EXPECT_EQ(0, text.Get()[3]);
  EXPECT_EQ(0U, SysStringLen(nullptr));
  EXPECT_EQ(nullptr, SysAllocString(nullptr));
  SysFreeString(nullptr);
  BSTR changed = SysAllocString(OLESTR("old"));
  EXPECT_TRUE(SysReAllocStringLen(&changed, OLESTR("newer"), 4));
  EXPECT_EQ("newe", ToUtf8(Bstr::ViewOf(changed)));
  SysFreeString(changed);
  const BSTR bytes = SysAllocStringByteLen("abc", 3);
  EXPECT_EQ(3U, SysStringByteLen(bytes));
  EXPECT_EQ(1U, SysStringLen(bytes));
  SysFreeString(bytes);
}

TEST(Values, ReferencesAreFollowedWhenCopiedSo) {
  LONG number = 11;
  VARIANT inner = LateValue::Reference(VT_I4, &number).Get();
  const LateValue outer = LateValue::Reference(VT_VARIANT, &inner);
  VARIANT copy;
  VariantInit(&copy);
  EXPECT_EQ(S_OK, VariantCopy(&copy, &inner));
  EXPECT_EQ(VT_BYREF | VT_I4, copy.vt);
  for (VARIANT reference : {inner, outer.Get()}) {
    EXPECT_EQ(S_OK, VariantCopyInd(&copy, &reference));
    EXPECT_EQ(VT_I4, copy.vt);
    EXPECT_EQ(11, copy.lVal);
  }
}

TEST(Values, ArraysOwnTheirElements) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 5, 2);
  ASSERT_NE(nullptr, array);
  LONG index = 6;
  EXPECT_EQ(S_OK, SafeArrayPutElement(array, &index, Bstr(OLESTR("six")).Get()));
  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(S_OK, SafeArrayCopy(array, &copy));
  for (SAFEARRAY* const each : {array, copy}) {
    LONG bounds[2] = {};
    VARTYPE type = 0;
    Bstr text;
    EXPECT_EQ(1U, SafeArrayGetDim(each));
    EXPECT_EQ(S_OK, SafeArrayGetLBound(each, 1, &bounds[0]));
    EXPECT_EQ(S_OK, SafeArrayGetUBound(each, 1, &bounds[1]));
    EXPECT_EQ(S_OK, SafeArrayGetVartype(each, &type));
    EXPECT_TRUE(bounds[0] == 5 && bounds[1] == 6 && type == VT_BSTR);
    EXPECT_EQ(S_OK, SafeArrayGetElement(each, &index, text.Put()));
    EXPECT_EQ("six", ToUtf8(text.View()));
    for (LONG outside : {4, 7}) {
      EXPECT_EQ(DISP_E_BADINDEX, SafeArrayGetElement(each, &outside, text.Put()));
      EXPECT_EQ(DISP_E_BADINDEX, SafeArrayPutElement(each, &outside, nullptr));
    }
    EXPECT_EQ(DISP_E_BADINDEX, SafeArrayGetUBound(each, 2, &bounds[1]));
  }
  SAFEARRAYBOUND bound{3, 0};
  BSTR* elements = nullptr;
  EXPECT_EQ(S_OK, SafeArrayLock(array));
  EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayDestroy(array));
  EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayRedim(array, &bound));
  EXPECT_EQ(S_OK, SafeArrayUnlock(array));
  EXPECT_EQ(S_OK, SafeArrayRedim(array, &bound));
  EXPECT_EQ(S_OK, SafeArrayAccessData(array, reinterpret_cast<void**>(&elements)));
  EXPECT_EQ("six", ToUtf8(Bstr::ViewOf(elements[1])));
  EXPECT_EQ(nullptr, elements[2]);
  EXPECT_EQ(S_OK, SafeArrayUnaccessData(array));
  EXPECT_EQ(S_OK, SafeArrayDestroy(array));
  EXPECT_EQ(S_OK, SafeArrayDestroy(copy));
}

TEST(Values, IdentifiersHaveOneText) {
  const GUID guid = {0x6E0D3B52, 0x4C1F, 0x4B7A, {0x9C, 0x0E, 0x52, 0xD4, 0xA8, 0xF1, 0x73, 0x0B}};
  OLECHAR text[39];
  EXPECT_EQ(39, StringFromGUID2(guid, text, 39));
  EXPECT_EQ("{6E0D3B52-4C1F-4B7A-9C0E-52D4A8F1730B}", ToUtf8(text));
  EXPECT_EQ(0, StringFromGUID2(guid, text, 38));
  GUID parsed;
  EXPECT_EQ(S_OK, CLSIDFromString(OLESTR("{6e0d3b52-4c1f-4b7a-9c0e-52d4a8f1730b}"), &parsed));
  EXPECT_EQ(guid, parsed);
  EXPECT_EQ(CO_E_CLASSSTRING, CLSIDFromString(OLESTR("{6e0d3b52}"), &parsed));
  EXPECT_EQ(CO_E_CLASSSTRING,
            CLSIDFromString(OLESTR("{6e0d3b52-4c1f-4b7a-9c0e-52d4a8f1730b}}"), &parsed));
  EXPECT_EQ(CO_E_CLASSSTRING, CLSIDFromString(OLESTR("No.Such.Name"), &parsed));
  EXPECT_EQ(S_OK, CLSIDFromProgID(OLESTR("SabXmlParser.VeAppParser"), &parsed));
  LPOLESTR name = nullptr;
  EXPECT_EQ(S_OK, ProgIDFromCLSID(parsed, &name));
  EXPECT_EQ("SabXmlParser.VeAppParser.1", ToUtf8(name));
  CoTaskMemFree(name);
}

}  // namespace
}  // namespace sab::testing
