#pragma once

#include <vector>

#include "base/bstr.h"

namespace sab {

/// Stores a new one-dimensional array, lower bound 0, for the caller, who destroys it.
/// @return E_POINTER for a null place; E_OUTOFMEMORY
HRESULT CopyToArray(const std::vector<Bstr>& list, SAFEARRAY** out) noexcept;
HRESULT CopyToArray(const std::vector<INT>& list, SAFEARRAY** out) noexcept;
HRESULT CopyToArray(const std::vector<ULONG>& list, SAFEARRAY** out) noexcept;

}  // namespace sab
