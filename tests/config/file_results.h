#pragma once

#include "config/temporary_folder.h"
#include "platform/file.h"

namespace sab {

constexpr HRESULT kPathNotFound = static_cast<HRESULT>(0x80070003);
constexpr HRESULT kAccessDenied = static_cast<HRESULT>(0x80070005);

/// The bytes of a file, or why they are not read.
inline std::string ReadOrReason(const Text& name) {
  std::string reason;
  const auto bytes = ReadFileBytes(name, reason);
  return bytes ? *bytes : "refused: " + reason;
}

inline HRESULT ResultOfReplacing(const Text& name, std::string_view bytes,
                                 std::string* message = nullptr) {
  return ResultOf([&] { ReplaceFileBytes(name, bytes); }, message);
}

}  // namespace sab
