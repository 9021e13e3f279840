#pragma once

#include <new>
#include <type_traits>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "object/list_array.h"

namespace sab {

// How a property reads and writes its field. These few overloads hold, once for all
// properties, the check of the out pointer, the copy and the result when there is no memory.

template <class Value>
concept PlainValue = std::is_arithmetic_v<Value> || std::is_enum_v<Value>;

template <PlainValue Value>
HRESULT GetField(Value field, Value* out) noexcept {
  if (!out) return E_POINTER;
  *out = field;
  return S_OK;
}

template <PlainValue Value>
HRESULT PutField(Value& field, Value value) noexcept {
  field = value;
  return S_OK;
}

/// Hands out a new string that the caller frees; null for null.
inline HRESULT GetField(const Bstr& field, BSTR* out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (field.IsNull()) return S_OK;
  *out = SysAllocStringLen(field.Get(), SysStringLen(field.Get()));
  return *out ? S_OK : E_OUTOFMEMORY;
}

/// Stores a copy; null stays null. Without memory the field keeps what it had.
inline HRESULT PutField(Bstr& field, BSTR value) noexcept {
  if (value == field.Get()) return S_OK;
  BSTR copy = nullptr;
  if (value) {
    copy = SysAllocStringLen(value, SysStringLen(value));
    if (!copy) return E_OUTOFMEMORY;
  }
  field.Attach(copy);
  return S_OK;
}

/// Hands out a new reference; null for null.
template <class Interface>
HRESULT GetField(const ComPtr<Interface>& field, Interface** out) noexcept {
  if (!out) return E_POINTER;
  field.CopyTo(out);
  return S_OK;
}

}  // namespace sab
