#pragma once

#include <vector>

#include "base/bstr.h"

namespace sab {

/// A list of texts that callers receive as a one-dimensional array of strings, lower bound 0.
class StringList {
 public:
  /// Raises std::bad_alloc and then holds what it held.
  void Append(TextView text) { texts_.emplace_back(text); }
  bool IsEmpty() const { return texts_.empty(); }

  /// Stores a new array for the caller, who destroys it.
  /// @return E_POINTER for a null place; E_OUTOFMEMORY
  HRESULT CopyTo(SAFEARRAY** out) const noexcept;

 private:
  std::vector<Bstr> texts_;
};

}  // namespace sab
