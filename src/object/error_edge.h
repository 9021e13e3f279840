#pragma once

#include <sabxml/com.h>

#include <string>
#include <string_view>
#include <utility>

namespace sab {

/// Who reports a failure: named in the error info that the caller reads.
struct ErrorOrigin {
  std::string_view source;  ///< ProgID of the class, ASCII
  const IID* interface_id;  ///< interface whose method failed
};

/// Sets the thread's error object and returns the code. Failing to do so is not an error, but no
/// error object of an earlier call stays.
/// @param message UTF-8: what failed, where, and what to do
HRESULT ReportError(const ErrorOrigin& origin, HRESULT code, std::string_view message) noexcept;

/// Turns the exception being handled into a result code and the thread's error object.
HRESULT ReportCurrentException(const ErrorOrigin& origin) noexcept;

/// Sets the thread's error object for a failure of which only the code is known; returns the code.
HRESULT ReportCode(const ErrorOrigin& origin, HRESULT code) noexcept;

/// What the thread's error object says, which is taken; without one the code, in words where there
/// are any. UTF-8. Raises std::bad_alloc.
std::string TakeErrorDescription(HRESULT code);

/// Reports a failing result of another object or of a part of this one as the origin's own, with
/// the description that is there already; returns the code.
HRESULT ReportResult(const ErrorOrigin& origin, HRESULT code) noexcept;

/// The edge of an interface method: runs the body and lets no exception through. The thread's error
/// object is this failure's afterwards, and there is none after a success, whatever the body passed
/// over on its way. A body without a result means S_OK.
template <class Body>
HRESULT Guard(const ErrorOrigin& origin, Body&& body) noexcept {
  SetErrorInfo(0, nullptr);
  try {
    HRESULT result = S_OK;
    if constexpr (std::is_void_v<decltype(body())>) {
      std::forward<Body>(body)();
    } else {
      result = std::forward<Body>(body)();
    }
    if (FAILED(result)) return ReportResult(origin, result);
    SetErrorInfo(0, nullptr);
    return result;
  } catch (...) {
    return ReportCurrentException(origin);
  }
}

}  // namespace sab
