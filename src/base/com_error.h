#pragma once

#include <sabxml/com.h>
#include <sabxml/result_codes.h>

#include <stdexcept>
#include <string>
#include <system_error>

namespace sab {

/// Result codes of the server's own family: what a descriptor or catalogue lacks.
inline constexpr HRESULT kInvalidApplication = static_cast<HRESULT>(sabxml::kInvalidApplication);
inline constexpr HRESULT kInvalidTemplate = static_cast<HRESULT>(sabxml::kInvalidTemplate);
inline constexpr HRESULT kInvalidEnvironment = static_cast<HRESULT>(sabxml::kInvalidEnvironment);
inline constexpr HRESULT kInvalidModule = static_cast<HRESULT>(sabxml::kInvalidModule);
inline constexpr HRESULT kInvalidCommand = static_cast<HRESULT>(sabxml::kInvalidCommand);
inline constexpr HRESULT kInvalidUserInterface =
    static_cast<HRESULT>(sabxml::kInvalidUserInterface);
inline constexpr HRESULT kInvalidCatalogue = kInvalidUserInterface;
inline constexpr HRESULT kDocumentNotLoaded = static_cast<HRESULT>(sabxml::kDocumentNotLoaded);

/// A failure on its way to an interface edge, where it becomes a result code and error info.
class ComError : public std::runtime_error {
 public:
  /// @param code a failing HRESULT
  /// @param message UTF-8: what failed, in which file and place, and what to do; empty for the
  /// words that the code has
  explicit ComError(HRESULT code, const std::string& message = {})
      : std::runtime_error(message), code_(code) {}

  HRESULT Code() const { return code_; }

 private:
  HRESULT code_;
};

/// The result code for what the system refused: HRESULT_FROM_WIN32(ERROR_TOO_MANY_OPEN_FILES)
/// without descriptors, else E_FAIL.
inline HRESULT ResultOfSystemError(const std::system_error& error) {
  const bool lacks_descriptors = error.code() == std::errc::too_many_files_open ||
                                 error.code() == std::errc::too_many_files_open_in_system;
  return lacks_descriptors ? static_cast<HRESULT>(0x80070004) : E_FAIL;
}

/// Raises ComError when the code is a failure.
inline void Check(HRESULT code, const char* message) {
  if (FAILED(code)) throw ComError(code, message);
}

}  // namespace sab
