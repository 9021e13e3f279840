// Automation values: one set of expectations for the system's runtime and for ours.

#include <gtest/gtest.h>
#include <sabxml/com.h>

#include <cstring>
#include <string>

#include "base/bstr.h"

namespace sab::testing {
namespace {

VARIANT Number(VARTYPE type, LONGLONG value) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = type;
  variant.llVal = value;
  return variant;
}

VARIANT Real(VARTYPE type, double value) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = type;
  if (type == VT_R4) {
    variant.fltVal = static_cast<float>(value);
  } else {
    variant.dblVal = value;
  }
  return variant;
}

VARIANT Words(const OLECHAR* text) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_BSTR;
  variant.bstrVal = SysAllocString(text);
  return variant;
}

// "type:value", or the failure.
std::string Converted(VARIANT source, VARTYPE type, USHORT flags = 0) {
  VARIANT result;
  VariantInit(&result);
  const HRESULT outcome = VariantChangeType(&result, &source, flags, type);
  VariantClear(&source);
  if (FAILED(outcome)) {
    EXPECT_EQ(VT_EMPTY, result.vt);
    return outcome == DISP_E_OVERFLOW       ? "overflow"
           : outcome == DISP_E_TYPEMISMATCH ? "mismatch"
                                            : "failure";
  }
  EXPECT_EQ(type, result.vt);
  std::string text;
  switch (type) {
    case VT_BSTR:
      text = "'" + ToUtf8(Bstr::ViewOf(result.bstrVal)) + "'";
      break;
    case VT_R8:
      text = std::to_string(result.dblVal);
      break;
    case VT_R4:
      text = std::to_string(result.fltVal);
      break;
    case VT_BOOL:
    case VT_I2:
      text = std::to_string(result.iVal);
      break;
    case VT_UI2:
      text = std::to_string(result.uiVal);
      break;
    case VT_UI1:
      text = std::to_string(result.bVal);
      break;
    case VT_UI4:
      text = std::to_string(result.ulVal);
      break;
    case VT_I8:
      text = std::to_string(result.llVal);
      break;
    default:
      text = std::to_string(result.lVal);
  }
  VariantClear(&result);
  return text;
}

TEST(Values, ConvertAsTheDocumentationSays) {
  const struct {
    VARIANT source;
    VARTYPE type;
    const char* expected;
  } rows[] = {
      {Number(VT_I4, -5), VT_BSTR, "'-5'"},
      {Number(VT_UI4, 4000000000LL), VT_BSTR, "'4000000000'"},
      {Number(VT_I8, -9007199254740993LL), VT_BSTR, "'-9007199254740993'"},
      {Real(VT_R8, 0.1), VT_BSTR, "'0.1'"},
      {Real(VT_R8, -2.0), VT_BSTR, "'-2'"},
      {Real(VT_R8, 1e20), VT_BSTR, "'1E+20'"},
      {Real(VT_R4, 0.1), VT_BSTR, "'0.1'"},
      {Number(VT_BOOL, -1), VT_BSTR, "'-1'"},
      {Number(VT_EMPTY, 0), VT_BSTR, "''"},
      {Number(VT_EMPTY, 0), VT_I4, "0"},
      {Number(VT_NULL, 0), VT_I4, "mismatch"},
      {Words(OLESTR("42")), VT_I4, "42"},
      {Words(OLESTR("  -42 ")), VT_I4, "-42"},
      {Words(OLESTR("2.5")), VT_I4, "2"},
      {Words(OLESTR("3.5")), VT_I4, "4"},
      {Words(OLESTR("1e3")), VT_I4, "1000"},
      {Words(OLESTR("")), VT_I4, "mismatch"},
      {Words(OLESTR("12abc")), VT_I4, "mismatch"},
      {Words(OLESTR("2147483648")), VT_I4, "overflow"},
      {Words(OLESTR("0.25")), VT_R8, "0.250000"},
      {Words(OLESTR("true")), VT_BOOL, "-1"},
      {Words(OLESTR("False")), VT_BOOL, "0"},
      {Words(OLESTR("#TRUE#")), VT_BOOL, "-1"},
      {Words(OLESTR("2")), VT_BOOL, "-1"},
      {Words(OLESTR("yes")), VT_BOOL, "mismatch"},
      {Number(VT_I4, 70000), VT_I2, "overflow"},
      {Number(VT_I4, -1), VT_UI2, "overflow"},
      {Number(VT_I4, 300), VT_UI1, "overflow"},
      {Number(VT_I4, 7), VT_BOOL, "-1"},
      {Number(VT_I4, -1), VT_I8, "-1"},
      {Real(VT_R8, 2.5), VT_I4, "2"},
      {Real(VT_R8, -3.5), VT_I4, "-4"},
      {Real(VT_R8, 1e300), VT_I8, "overflow"},
      {Real(VT_R8, 1e300), VT_R4, "overflow"},
      {Number(VT_BOOL, -1), VT_I4, "-1"},
      {Number(VT_BOOL, -1), VT_R8, "-1.000000"},
  };
  int row_number = 0;
  for (const auto& row : rows) {
    EXPECT_EQ(row.expected, Converted(row.source, row.type)) << "row " << row_number;
    ++row_number;
  }
  EXPECT_EQ("'True'", Converted(Number(VT_BOOL, -1), VT_BSTR, VARIANT_ALPHABOOL));
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
  VARIANT reference = Number(VT_BYREF | VT_I4, 0);
  reference.plVal = &number;
  VARIANT outer = Number(VT_BYREF | VT_VARIANT, 0);
  outer.pvarVal = &reference;
  VARIANT copy;
  VariantInit(&copy);
  EXPECT_EQ(S_OK, VariantCopy(&copy, &reference));
  EXPECT_EQ(VT_BYREF | VT_I4, copy.vt);
  EXPECT_EQ(S_OK, VariantCopyInd(&copy, &reference));
  EXPECT_EQ(VT_I4, copy.vt);
  EXPECT_EQ(11, copy.lVal);
  EXPECT_EQ(S_OK, VariantCopyInd(&copy, &outer));
  EXPECT_EQ(VT_I4, copy.vt);
}

TEST(Values, ArraysOwnTheirElements) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 5, 2);
  ASSERT_NE(nullptr, array);
  LONG index = 6;
  {
    const Bstr text(OLESTR("six"));
    EXPECT_EQ(S_OK, SafeArrayPutElement(array, &index, text.Get()));
  }
  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(S_OK, SafeArrayCopy(array, &copy));
  for (SAFEARRAY* const each : {array, copy}) {
    LONG lower = 0;
    LONG upper = 0;
    VARTYPE type = 0;
    EXPECT_EQ(1U, SafeArrayGetDim(each));
    EXPECT_EQ(S_OK, SafeArrayGetLBound(each, 1, &lower));
    EXPECT_EQ(S_OK, SafeArrayGetUBound(each, 1, &upper));
    EXPECT_EQ(S_OK, SafeArrayGetVartype(each, &type));
    EXPECT_EQ(5, lower);
    EXPECT_EQ(6, upper);
    EXPECT_EQ(VT_BSTR, type);
    Bstr text;
    EXPECT_EQ(S_OK, SafeArrayGetElement(each, &index, text.Put()));
    EXPECT_EQ("six", ToUtf8(text.View()));
    LONG outside = 7;
    EXPECT_EQ(DISP_E_BADINDEX, SafeArrayGetElement(each, &outside, text.Put()));
    outside = 4;
    EXPECT_EQ(DISP_E_BADINDEX, SafeArrayPutElement(each, &outside, nullptr));
    EXPECT_EQ(DISP_E_BADINDEX, SafeArrayGetUBound(each, 2, &upper));
  }
  EXPECT_EQ(S_OK, SafeArrayLock(array));
  EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayDestroy(array));
  SAFEARRAYBOUND bound{3, 0};
  EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayRedim(array, &bound));
  EXPECT_EQ(S_OK, SafeArrayUnlock(array));
  EXPECT_EQ(S_OK, SafeArrayRedim(array, &bound));
  BSTR* elements = nullptr;
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
  EXPECT_EQ(CO_E_CLASSSTRING, CLSIDFromString(OLESTR("No.Such.Name"), &parsed));
  EXPECT_EQ(S_OK, CLSIDFromProgID(OLESTR("SabXmlParser.VeAppParser"), &parsed));
  LPOLESTR name = nullptr;
  EXPECT_EQ(S_OK, ProgIDFromCLSID(parsed, &name));
  EXPECT_EQ("SabXmlParser.VeAppParser.1", ToUtf8(name));
  CoTaskMemFree(name);
}

}  // namespace
}  // namespace sab::testing
