#include "client/late_call.h"

#include <utility>

#include "base/bstr.h"
#include "base/com_error.h"

namespace sab::client {
namespace {

std::string TakeText(BSTR text) {
  Bstr owned;
  owned.Attach(text);
  return ToUtf8(owned.View());
}

}  // namespace

InvokeParameters::InvokeParameters(const std::vector<Value>& arguments, bool is_put) {
  for (auto i = arguments.rbegin(); i != arguments.rend(); ++i) reversed.push_back(i->Get());
  parameters = {reversed.data(), is_put ? &put : nullptr, static_cast<UINT>(reversed.size()),
                is_put ? 1U : 0U};
}

CallResult Invoke(IDispatch& object, DISPID member, WORD flags, DISPPARAMS& parameters) {
  CallResult result;
  EXCEPINFO exception{};
  result.code = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                              result.value.Put(), &exception, &result.bad_argument);
  result.scode = exception.scode;
  result.source = TakeText(exception.bstrSource);
  result.description = TakeText(exception.bstrDescription);
  TakeText(exception.bstrHelpFile);
  return result;
}

CallResult Invoke(IDispatch& object, DISPID member, WORD flags,
                  const std::vector<Value>& arguments) {
  InvokeParameters given(arguments, (flags & DISPATCH_PROPERTYPUT) != 0);
  return Invoke(object, member, flags, given.parameters);
}

DISPID MemberNamed(IDispatch& object, std::string_view name) {
  Text wide = FromUtf8(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(result)) throw ComError(result, "there is no member named " + std::string(name));
  return id;
}

Value Call(IDispatch& object, DISPID member, WORD flags, const std::vector<Value>& arguments) {
  CallResult result = Invoke(object, member, flags, arguments);
  if (FAILED(result.code)) throw ComError(result.Outcome(), result.description);
  return std::move(result.value);
}

Value Call(IDispatch& object, std::string_view name, WORD flags,
           const std::vector<Value>& arguments) {
  return Call(object, MemberNamed(object, name), flags, arguments);
}

Value Get(IDispatch& object, std::string_view property, const std::vector<Value>& arguments) {
  return Call(object, property, DISPATCH_PROPERTYGET, arguments);
}

void Put(IDispatch& object, std::string_view property, const Value& value) {
  Call(object, property, DISPATCH_PROPERTYPUT, {value});
}

ListWalk::ListWalk(IDispatch& list)
    : list_(&list), position_(Call(list, "GetHeadPosition", DISPATCH_METHOD)) {}

Value ListWalk::Next() {
  // A variable of the caller's that the method moves on, as scripts pass it.
  Value position = std::exchange(position_, {});
  Value element =
      Call(*list_, "GetNext", DISPATCH_METHOD, {Value::Reference(VT_VARIANT, position.Put())});
  position_ = std::move(position);
  return element;
}

}  // namespace sab::client
