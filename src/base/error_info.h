#pragma once

#include <string>

#include "base/bstr.h"
#include "base/com_ptr.h"

namespace sab {

/// Takes the thread's error object, so that it does not explain a later failure.
/// @return its description; empty without one
inline std::string TakeErrorInfo() {
  ComPtr<IErrorInfo> info;
  Bstr description;
  if (GetErrorInfo(0, info.Put()) == S_OK) info->GetDescription(description.Put());
  return ToUtf8(description.View());
}

}  // namespace sab
