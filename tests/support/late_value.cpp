#include "support/late_value.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/bstr.h"

namespace sab::testing {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

LateValue::LateValue(LONG number) : LateValue() {
  value_.vt = VT_I4;
  value_.lVal = number;
}

LateValue::LateValue(double number) : LateValue() {
  value_.vt = VT_R8;
  value_.dblVal = number;
}

LateValue::LateValue(const std::string& utf8) : LateValue() {
  value_.vt = VT_BSTR;
  value_.bstrVal = Bstr(FromUtf8(utf8)).Detach();
}

LateValue LateValue::Of(IDispatch* object) {
  LateValue value;
  object->AddRef();
  value.value_.vt = VT_DISPATCH;
  value.value_.pdispVal = object;
  return value;
}

LateValue LateValue::Missing() {
  LateValue value(DISP_E_PARAMNOTFOUND);
  value.value_.vt = VT_ERROR;
  return value;
}

LateValue LateValue::Reference(VARTYPE type, void* variable) {
  LateValue value;
  value.value_.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.value_.byref = variable;
  return value;
}

LateValue::LateValue(const LateValue& other) : LateValue() {
  VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
}

LateValue LateValue::Get(const std::string& property) const {
  if (value_.vt != VT_DISPATCH || !value_.pdispVal) {
    ADD_FAILURE() << "no object has a " << property;
    return {};
  }
  sab::Text wide = FromUtf8(property);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  EXPECT_EQ(S_OK, value_.pdispVal->GetIDsOfNames(IID_NULL, names, 1, 0, &id)) << property;
  const LateResult result = Call(*value_.pdispVal, id, DISPATCH_PROPERTYGET);
  EXPECT_EQ(S_OK, result.code) << property;
  return result.value;
}

std::string LateValue::Text() const {
  LateValue text;
  EXPECT_EQ(S_OK, VariantChangeType(&text.value_, const_cast<VARIANT*>(&value_), 0, VT_BSTR));
  return ToUtf8(Bstr::ViewOf(text.value_.bstrVal));
}

InvokeParameters::InvokeParameters(const std::vector<LateValue>& arguments, bool is_put) {
  for (auto i = arguments.rbegin(); i != arguments.rend(); ++i) reversed.push_back(i->Get());
  parameters = {reversed.data(), is_put ? &put : nullptr, static_cast<UINT>(reversed.size()),
                is_put ? 1U : 0U};
}

LateResult Call(IDispatch& object, DISPID member, WORD flags,
                const std::vector<LateValue>& arguments) {
  InvokeParameters given(arguments, (flags & DISPATCH_PROPERTYPUT) != 0);
  EXCEPINFO exception{};
  LateResult result;
  result.code = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &given.parameters,
                              result.value.Put(), &exception, &result.bad_argument);
  result.scode = exception.scode;
  Bstr texts[3];
  texts[0].Attach(exception.bstrSource);
  texts[1].Attach(exception.bstrDescription);
  texts[2].Attach(exception.bstrHelpFile);
  result.source = ToUtf8(texts[0].View());
  result.description = ToUtf8(texts[1].View());
  return result;
}

}  // namespace sab::testing
