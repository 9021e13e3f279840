#include "client/value.h"

#include <sabxml/variant_size.h>

#include "base/bstr.h"
#include "base/com_error.h"

namespace sab::client {

Value::Value(LONG number) : Value() {
  variant_.vt = VT_I4;
  variant_.lVal = number;
}

Value::Value(LONGLONG number) : Value() {
  variant_.vt = VT_I8;
  variant_.llVal = number;
}

Value::Value(double number) : Value() {
  variant_.vt = VT_R8;
  variant_.dblVal = number;
}

Value::Value(std::string_view utf8) : Value() {
  variant_.bstrVal = Bstr(FromUtf8(utf8)).Detach();
  variant_.vt = VT_BSTR;
}

Value Value::Of(IDispatch* object) {
  Value value;
  object->AddRef();
  value.variant_.vt = VT_DISPATCH;
  value.variant_.pdispVal = object;
  return value;
}

Value Value::Missing() {
  Value value(DISP_E_PARAMNOTFOUND);
  value.variant_.vt = VT_ERROR;
  return value;
}

Value Value::Reference(VARTYPE type, void* variable) {
  Value value;
  value.variant_.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.variant_.byref = variable;
  return value;
}

Value::Value(const Value& other) : Value() {
  Check(VariantCopy(&variant_, const_cast<VARIANT*>(&other.variant_)), "copying a value");
}

std::string Value::Text() const {
  Value text;
  Check(VariantChangeType(&text.variant_, const_cast<VARIANT*>(&variant_), 0, VT_BSTR),
        "a value that is no text");
  return ToUtf8(Bstr::ViewOf(text.variant_.bstrVal));
}

LONGLONG Value::Number() const {
  Value number;
  const HRESULT result =
      VariantChangeType(&number.variant_, const_cast<VARIANT*>(&variant_), 0, VT_I8);
  return SUCCEEDED(result) ? number.variant_.llVal : 0;
}

std::vector<Value> Value::Elements() const {
  std::vector<Value> elements;
  if ((variant_.vt & VT_ARRAY) == 0 || !variant_.parray) return elements;
  SAFEARRAY* const array = variant_.parray;
  LONG lower = 0;
  LONG upper = -1;
  VARTYPE type = VT_EMPTY;
  Check(SafeArrayGetLBound(array, 1, &lower), "the lower bound of an array");
  Check(SafeArrayGetUBound(array, 1, &upper), "the upper bound of an array");
  Check(SafeArrayGetVartype(array, &type), "the type of an array");
  for (LONG i = lower; i <= upper; ++i) {
    VARIANT& element = elements.emplace_back().variant_;
    Check(SafeArrayGetElement(array, &i, sabxml::PlaceOfValue(element, type)),
          "an element of an array");
    if (type != VT_VARIANT) element.vt = type;
  }
  return elements;
}

}  // namespace sab::client
