#pragma once

#include <sabxml/com.h>

#include <string_view>
#include <utility>

namespace sab {

/// Who reports a failure: named in the error info that the caller reads.
struct ErrorOrigin {
  std::string_view source;  ///< ProgID of the class, ASCII
  const IID* interface_id;  ///< interface whose method failed
};

/// Sets the thread's error object and returns the code. Failing to do so is not an error.
/// @param message UTF-8: what failed, where, and what to do
HRESULT ReportError(const ErrorOrigin& origin, HRESULT code, std::string_view message) noexcept;

/// Turns the exception being handled into a result code and the thread's error object.
HRESULT ReportCurrentException(const ErrorOrigin& origin) noexcept;

/// The edge of an interface method: runs the body, lets no exception through, and leaves no error
/// object of an earlier call behind. A body without a result means S_OK.
template <class Body>
HRESULT Guard(const ErrorOrigin& origin, Body&& body) noexcept {
  SetErrorInfo(0, nullptr);
  try {
    if constexpr (std::is_void_v<decltype(body())>) {
      std::forward<Body>(body)();
      return S_OK;
    } else {
      return std::forward<Body>(body)();
    }
  } catch (...) {
    return ReportCurrentException(origin);
  }
}

}  // namespace sab
