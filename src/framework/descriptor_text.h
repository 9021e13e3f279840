#pragma once

#include "base/bstr.h"
#include "base/com_error.h"
#include "object/fields.h"

namespace sab {

/// A text of a template, module, environment or command descriptor, handed out with the manners
/// that hosts know: empty, never null, while the value is unset, and E_FAIL for a null place.
struct DescriptorText : Bstr {};

inline HRESULT GetField(const DescriptorText& field, BSTR* out) {
  if (!out) throw ComError(E_FAIL, "There is no place for the text: it is null.");
  const TextView view = field.View();
  *out = SysAllocStringLen(view.data(), static_cast<UINT>(view.size()));
  return *out ? S_OK : E_OUTOFMEMORY;
}

/// The same, but E_POINTER for a null place.
struct NeverNullText : DescriptorText {};

inline HRESULT GetField(const NeverNullText& field, BSTR* out) {
  return out ? GetField(static_cast<const DescriptorText&>(field), out) : E_POINTER;
}

/// The same, but E_FAIL for a value that is unset or empty, too; the place is untouched then.
struct NeededText : DescriptorText {};

inline HRESULT GetField(const NeededText& field, BSTR* out) {
  if (out && field.IsEmpty()) {
    throw ComError(E_FAIL, "The value is not set: generate the descriptor.");
  }
  return GetField(static_cast<const DescriptorText&>(field), out);
}

/// The same, but the place becomes null.
struct NeededOrNullText : NeededText {};

inline HRESULT GetField(const NeededOrNullText& field, BSTR* out) {
  if (out) *out = nullptr;
  return GetField(static_cast<const NeededText&>(field), out);
}

}  // namespace sab
