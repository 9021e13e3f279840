#include "common/error_edge.h"

#include <new>

#include "base/bstr.h"
#include "base/com_error.h"
#include "base/com_ptr.h"

namespace sab {

HRESULT ReportError(const ErrorOrigin& origin, HRESULT code, std::string_view message) noexcept {
  try {
    ComPtr<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(creator.Put()))) return code;
    creator->SetGUID(*origin.interface_id);
    creator->SetSource(Bstr(FromUtf8(origin.source)).Get());
    creator->SetDescription(Bstr(FromUtf8(message)).Get());
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, info.PutVoid()))) {
      SetErrorInfo(0, info.Get());
    }
  } catch (const std::exception&) {
    // Without memory for the description the code alone has to do.
  }
  return code;
}

HRESULT ReportCurrentException(const ErrorOrigin& origin) noexcept {
  try {
    throw;
  } catch (const ComError& error) {
    return ReportError(origin, error.Code(), error.what());
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    return ReportError(origin, E_FAIL, error.what());
  } catch (...) {
    return ReportError(origin, E_FAIL, "An unknown failure inside the component.");
  }
}

}  // namespace sab
