#pragma once

#include "base/bstr.h"

namespace sab {

/// The text getter of template, module and command descriptors: a new string for the caller, empty
/// but never null while the value is unset.
/// @return E_FAIL for a null place, as hosts of these descriptors know it; E_OUTOFMEMORY
inline HRESULT CopyText(const Bstr& text, BSTR* out) noexcept {
  if (!out) return E_FAIL;
  const TextView view = text.View();
  *out = SysAllocStringLen(view.data(), static_cast<UINT>(view.size()));
  return *out ? S_OK : E_OUTOFMEMORY;
}

}  // namespace sab
