#include "cli/host/automation.h"

#include "base/bstr.h"
#include "base/error_info.h"
#include "base/result_words.h"
#include "client/late_call.h"

namespace sabxml::cli {

std::string ToUtf8(BSTR text) { return sab::ToUtf8(sab::Bstr::ViewOf(text)); }

std::string Failure::Explanation() const {
  if (SUCCEEDED(code_)) return what();
  const std::string words = sab::ResultWords(code_);
  return what() + (" (" + sab::ResultDigits(code_)) + (words.empty() ? "" : ": " + words) + ")";
}

void Fail(HRESULT code, const std::string& action) {
  const std::string description = WithStandardInput(sab::TakeErrorInfo());
  throw Failure(description.empty() ? action + " failed" : description, code);
}

Value Call(IDispatch& object, DISPID member, WORD flags, const std::vector<Value>& arguments) {
  return OrFail([&] { return sab::client::Call(object, member, flags, arguments); });
}

Value Call(IDispatch& object, std::string_view name, WORD flags,
           const std::vector<Value>& arguments) {
  return OrFail([&] { return sab::client::Call(object, name, flags, arguments); });
}

}  // namespace sabxml::cli
