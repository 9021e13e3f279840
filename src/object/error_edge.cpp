#include "object/error_edge.h"

#include <new>

#include "base/bstr.h"
#include "base/com_error.h"
#include "base/com_ptr.h"
#include "base/error_info.h"
#include "base/result_words.h"

namespace sab {
namespace {

std::string WordsOf(HRESULT code) {
  const std::string words = ResultWords(code);
  return "The call failed with " + ResultDigits(code) + (words.empty() ? "." : ": " + words + ".");
}

}  // namespace

HRESULT ReportError(const ErrorOrigin& origin, HRESULT code, std::string_view message) noexcept {
  SetErrorInfo(0, nullptr);
  try {
    const Bstr source(FromUtf8(origin.source));
    const Bstr description(FromUtf8(message));
    ComPtr<ICreateErrorInfo> creator;
    Check(CreateErrorInfo(creator.Put()), "no error object");
    Check(creator->SetGUID(*origin.interface_id), "no interface");
    Check(creator->SetSource(source.Get()), "no source");
    Check(creator->SetDescription(description.Get()), "no description");
    ComPtr<IErrorInfo> info;
    Check(creator->QueryInterface(IID_IErrorInfo, info.PutVoid()), "no error info");
    SetErrorInfo(0, info.Get());
  } catch (const std::exception&) {
    // Without memory for the description there is the code alone.
  }
  return code;
}

HRESULT ReportCode(const ErrorOrigin& origin, HRESULT code) noexcept try {
  return ReportError(origin, code, WordsOf(code));
} catch (const std::bad_alloc&) {
  SetErrorInfo(0, nullptr);
  return code;
}

std::string TakeErrorDescription(HRESULT code) {
  const std::string description = TakeErrorInfo();
  return description.empty() ? WordsOf(code) : description;
}

HRESULT ReportResult(const ErrorOrigin& origin, HRESULT code) noexcept try {
  return ReportError(origin, code, TakeErrorDescription(code));
} catch (const std::bad_alloc&) {
  SetErrorInfo(0, nullptr);
  return code;
}

HRESULT ReportCurrentException(const ErrorOrigin& origin) noexcept {
  try {
    throw;
  } catch (const ComError& error) {
    return *error.what() ? ReportError(origin, error.Code(), error.what())
                         : ReportCode(origin, error.Code());
  } catch (const std::bad_alloc&) {
    return ReportCode(origin, E_OUTOFMEMORY);
  } catch (const std::exception& error) {
    return ReportError(origin, E_FAIL, error.what());
  } catch (...) {
    return ReportError(origin, E_FAIL, "An unknown failure inside the component.");
  }
}

}  // namespace sab
