#pragma once

#include <sabxml/com.h>

#include <cstddef>

namespace sabxml {

/// The bytes that a value of an automation type takes: as an element of an array, or where a
/// reference in a variant points. 0 for a type that has no values of one size.
constexpr std::size_t SizeOfValue(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_UNKNOWN:
    case VT_DISPATCH:
      return sizeof(void*);
    case VT_VARIANT:
      return sizeof(VARIANT);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    default:
      return 0;
  }
}

/// Where a variant of the type holds its value. One of VT_VARIANT is the whole variant; the type of
/// one of VT_DECIMAL lies within the value, so it is set afterwards.
inline void* PlaceOfValue(VARIANT& variant, VARTYPE type) {
  if (type == VT_VARIANT) return &variant;
  if (type == VT_DECIMAL) return &variant.decVal;
  return &variant.byref;
}

}  // namespace sabxml
