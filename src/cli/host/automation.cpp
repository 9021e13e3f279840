#include "cli/host/automation.h"

#include "base/error_info.h"
#include "base/result_words.h"
#include "cli/standard_input.h"

namespace sabxml::cli {
namespace {

std::string TakeDescription() { return WithStandardInput(sab::TakeErrorInfo()); }

}  // namespace

std::string ToUtf8(BSTR text) {
  return text ? ToUtf8(sab::TextView(text, SysStringLen(text))) : std::string();
}

std::string Failure::Explanation() const {
  if (SUCCEEDED(code_)) return what();
  const std::string words = sab::ResultWords(code_);
  return what() + (" (" + sab::ResultDigits(code_)) + (words.empty() ? "" : ": " + words) + ")";
}

void Fail(HRESULT code, const std::string& action) {
  const std::string description = TakeDescription();
  throw Failure(description.empty() ? action + " failed" : description, code);
}

Value::Value(std::string_view text) {
  VariantInit(&variant_);
  const sab::Text wide = FromUtf8(text);
  variant_.vt = VT_BSTR;
  variant_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (!variant_.bstrVal) throw std::bad_alloc();
}

Value::Value(LONGLONG number) {
  VariantInit(&variant_);
  variant_.vt = VT_I8;
  variant_.llVal = number;
}

Value Call(IDispatch& object, DISPID member, WORD flags, std::vector<Value> arguments) {
  std::vector<VARIANTARG> given;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    given.push_back(argument->Get());  // still owned by its Value
  }
  DISPID put = DISPID_PROPERTYPUT;
  const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
  DISPPARAMS parameters{given.data(), is_put ? &put : nullptr, static_cast<UINT>(given.size()),
                        is_put ? 1U : 0U};
  Value result;
  EXCEPINFO exception{};
  const HRESULT outcome = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        &result.Get(), &exception, nullptr);
  if (SUCCEEDED(outcome)) return result;
  const std::string description = WithStandardInput(ToUtf8(exception.bstrDescription));
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  const HRESULT code = outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
  throw Failure(description.empty() ? "the call failed" : description, code);
}

Value Call(IDispatch& object, std::string_view name, WORD flags, std::vector<Value> arguments) {
  sab::Text wide = FromUtf8(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(result)) throw Failure("there is no member named " + std::string(name), result);
  return Call(object, id, flags, std::move(arguments));
}

}  // namespace sabxml::cli
