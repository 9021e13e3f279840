#include "automation/result_place.h"

#include <sabxml/variant_size.h>

#include <cstring>
#include <limits>
#include <utility>

namespace sab {
namespace {

constexpr int kMaxReferenceDepth = 16;

// What a type of numbers holds exactly.
struct NumberType {
  int digits;  // binary; 0 for what is no number
  bool is_signed;
};

NumberType NumberTypeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
      return {7, true};
    case VT_UI1:
      return {8, false};
    case VT_I2:
      return {15, true};
    case VT_UI2:
      return {16, false};
    case VT_I4:
    case VT_INT:
      return {31, true};
    case VT_UI4:
    case VT_UINT:
      return {32, false};
    case VT_I8:
      return {63, true};
    case VT_UI8:
      return {64, false};
    case VT_R4:
      return {24, true};
    case VT_R8:
      return {53, true};
    default:
      return {0, false};
  }
}

bool IsLocked(VARTYPE type, const SAFEARRAY* array) {
  return (type & VT_ARRAY) != 0 && array && array->cLocks > 0;
}

}  // namespace

VARIANTARG* Dereferenced(VARIANTARG& argument) noexcept {
  VARIANTARG* variable = &argument;
  for (int depth = 0; variable && variable->vt == (VT_BYREF | VT_VARIANT); ++depth) {
    if (depth == kMaxReferenceDepth) return nullptr;
    variable = variable->pvarVal;
  }
  return variable && (variable->vt & VT_BYREF) != 0 && !variable->byref ? nullptr : variable;
}

HRESULT CheckPlace(VARIANTARG& argument, VARTYPE type) noexcept {
  if ((argument.vt & VT_BYREF) == 0) return S_OK;
  const VARIANTARG* const place = Dereferenced(argument);
  if (!place) return DISP_E_TYPEMISMATCH;
  if ((place->vt & VT_BYREF) == 0) {
    return IsLocked(place->vt, place->parray) ? DISP_E_ARRAYISLOCKED : S_OK;
  }
  const auto there = static_cast<VARTYPE>(place->vt & ~VT_BYREF);
  if (there == type) {
    return (type & VT_ARRAY) != 0 && IsLocked(type, *place->pparray) ? DISP_E_ARRAYISLOCKED : S_OK;
  }
  if (type == VT_DISPATCH && there == VT_UNKNOWN) return S_OK;
  NumberType needed = NumberTypeOf(type);
  const NumberType given = NumberTypeOf(there);
  if (needed.digits == 0 || given.digits == 0) return DISP_E_TYPEMISMATCH;
  // Wide numbers are positions, counts and addresses, which are less than 2^53.
  if (needed.digits > 53) needed = {53, false};
  const bool fits = given.digits >= needed.digits && (given.is_signed || !needed.is_signed);
  return fits ? S_OK : DISP_E_OVERFLOW;
}

HRESULT StoreThrough(VARIANTARG& argument, VARIANT& value) noexcept {
  VARIANTARG* const place = Dereferenced(argument);
  if (!place) return DISP_E_TYPEMISMATCH;
  if ((place->vt & VT_BYREF) == 0) {
    MakeScriptable(value);
    std::swap(*place, value);  // the old value goes last: its object may look at the new one
    return S_OK;
  }
  const auto type = static_cast<VARTYPE>(place->vt & ~VT_BYREF);
  if (value.vt != type) {
    const HRESULT result = VariantChangeType(&value, &value, 0, type);
    if (FAILED(result)) return result;
  }
  if (type == VT_BSTR) {
    std::swap(*place->pbstrVal, value.bstrVal);
  } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    std::swap(*place->ppunkVal, value.punkVal);
  } else if ((type & VT_ARRAY) != 0) {
    std::swap(*place->pparray, value.parray);
  } else {
    const std::size_t size = sabxml::SizeOfValue(type);
    if (size == 0 || size > sizeof value.llVal) return DISP_E_TYPEMISMATCH;
    std::memcpy(place->byref, sabxml::PlaceOfValue(value, type), size);
  }
  return S_OK;
}

void MakeScriptable(VARIANT& value) noexcept {
  LONGLONG number = 0;
  switch (value.vt) {
    case VT_INT:
      number = value.intVal;
      break;
    case VT_UI2:
      number = value.uiVal;
      break;
    case VT_UI4:
      number = value.ulVal;
      break;
    case VT_UI8:
      if (value.llVal < 0) return;  // beyond 2^63
      [[fallthrough]];
    case VT_I8:
      number = value.llVal;
      break;
    default:
      return;
  }
  constexpr LONGLONG kExact = LONGLONG{1} << 53;
  // A position is always a double: the next one may be large.
  if (value.vt != VT_I8 && number >= std::numeric_limits<LONG>::min() &&
      number <= std::numeric_limits<LONG>::max()) {
    value.vt = VT_I4;
    value.lVal = static_cast<LONG>(number);
  } else if (number >= -kExact && number <= kExact) {
    value.vt = VT_R8;
    value.dblVal = static_cast<double>(number);
  }
}

}  // namespace sab
