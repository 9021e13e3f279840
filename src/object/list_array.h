#pragma once

#include <vector>

#include "base/bstr.h"

namespace sab {

/// A list of texts that is filled one by one.
struct StringList {
  std::vector<Bstr> texts;

  /// Raises std::bad_alloc and then holds what it held.
  void Append(TextView text) { texts.emplace_back(text); }
  bool IsEmpty() const { return texts.empty(); }
};

// A list is handed out as a new one-dimensional array, lower bound 0, for the caller, who destroys
// it; see fields.h.
HRESULT GetField(const std::vector<Bstr>& list, SAFEARRAY** out) noexcept;
HRESULT GetField(const std::vector<INT>& list, SAFEARRAY** out) noexcept;
HRESULT GetField(const std::vector<ULONG>& list, SAFEARRAY** out) noexcept;
inline HRESULT GetField(const StringList& list, SAFEARRAY** out) noexcept {
  return GetField(list.texts, out);
}

}  // namespace sab
