#include "support/late_value.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

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

LateValue LateValue::Of(IDispatch* object) {
  LateValue value;
  object->AddRef();
  value.value_.vt = VT_DISPATCH;
  value.value_.pdispVal = object;
  return value;
}

LateValue::LateValue(const LateValue& other) : LateValue() {
  VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
}

LateValue LateValue::Invoke(const std::string& name, WORD flags, const VARIANT* argument) const {
  LateValue result;
  if (value_.vt != VT_DISPATCH || !value_.pdispVal) {
    ADD_FAILURE() << "no object has a " << name;
    return result;
  }
  sab::Text wide = FromUtf8(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  EXPECT_EQ(S_OK, value_.pdispVal->GetIDsOfNames(IID_NULL, names, 1, 0, &id)) << name;
  VARIANT given;
  if (argument) given = *argument;
  DISPPARAMS parameters{&given, nullptr, argument ? 1U : 0U, 0};
  EXPECT_EQ(S_OK, value_.pdispVal->Invoke(id, IID_NULL, 0, flags, &parameters, &result.value_,
                                          nullptr, nullptr))
      << name;
  return result;
}

LateValue LateValue::Get(const std::string& property) const {
  return Invoke(property, DISPATCH_PROPERTYGET);
}

LateValue LateValue::Follow(const std::string& path) const {
  LateValue value(*this);
  for (const std::string& step : Split(path, ' ')) {
    LateValue next = step == "[0]" ? value.Invoke("GetHead", DISPATCH_METHOD) : value.Get(step);
    std::swap(value.value_, next.value_);
  }
  return value;
}

int LateValue::Count() const { return Invoke("GetCount", DISPATCH_METHOD).value_.lVal; }

std::string LateValue::Text() const {
  VARIANT text;
  VariantInit(&text);
  EXPECT_EQ(S_OK, VariantChangeType(&text, const_cast<VARIANT*>(&value_), 0, VT_BSTR));
  Bstr owned;
  owned.Attach(text.bstrVal);
  return ToUtf8(owned.View());
}

}  // namespace sab::testing
