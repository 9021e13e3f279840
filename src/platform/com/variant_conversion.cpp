#include <sabxml/com.h>

#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/com/number.h"
#include "platform/com/variant_types.h"

// Conversions among automation values. They follow what the platform's conversions give in the
// invariant locale: numbers are rounded to the nearest, halves to even; what does not fit is an
// overflow; a text must be a number from end to end.

namespace {

using sabcom::Number;

std::u16string_view ViewOf(BSTR string) {
  return string ? std::u16string_view(string, SysStringLen(string)) : std::u16string_view();
}

std::optional<bool> ParseTruth(std::u16string_view text) {
  if (text == u"#TRUE#") return true;
  if (text == u"#FALSE#") return false;
  std::u16string lower(text);
  for (char16_t& c : lower) {
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + (u'a' - u'A'));
  }
  if (lower == u"true") return true;
  if (lower == u"false") return false;
  return std::nullopt;
}

HRESULT ReadNumber(const VARIANT& source, Number& number) {
  switch (source.vt) {
    case VT_EMPTY:
      number = Number::Signed(0);
      return S_OK;
    case VT_I1:
      number = Number::Signed(static_cast<signed char>(source.cVal));
      return S_OK;
    case VT_I2:
    case VT_BOOL:
      number = Number::Signed(source.iVal);
      return S_OK;
    case VT_I4:
    case VT_INT:
      number = Number::Signed(source.lVal);
      return S_OK;
    case VT_I8:
      number = Number::Signed(source.llVal);
      return S_OK;
    case VT_UI1:
      number = Number::Unsigned(source.bVal);
      return S_OK;
    case VT_UI2:
      number = Number::Unsigned(source.uiVal);
      return S_OK;
    case VT_UI4:
    case VT_UINT:
      number = Number::Unsigned(source.ulVal);
      return S_OK;
    case VT_UI8:
      number = Number::Unsigned(source.ullVal);
      return S_OK;
    case VT_R4:
      number = Number::Real(source.fltVal);
      return S_OK;
    case VT_R8:
    case VT_DATE:
      number = Number::Real(source.dblVal);
      return S_OK;
    case VT_CY:
      number = Number::Money(source.cyVal.int64);
      return S_OK;
    case VT_BSTR:
      return sabcom::ParseNumber(ViewOf(source.bstrVal), number);
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

// Whole units of a sum of money, halves to even.
LONGLONG RoundedMoney(LONGLONG value) {
  const LONGLONG units = value / 10000;
  const LONGLONG rest = std::abs(value % 10000);
  const bool is_up = rest > 5000 || (rest == 5000 && units % 2 != 0);
  return is_up ? units + (value < 0 ? -1 : 1) : units;
}

template <class Integer, class Whole>
HRESULT Fit(Whole value, Integer& out) {
  if (!std::in_range<Integer>(value)) return DISP_E_OVERFLOW;
  out = static_cast<Integer>(value);
  return S_OK;
}

template <class Integer>
HRESULT ToInteger(const Number& number, Integer& out) {
  using Limits = std::numeric_limits<Integer>;
  switch (number.kind) {
    case Number::Kind::kSigned:
      return Fit(number.whole, out);
    case Number::Kind::kUnsigned:
      return Fit(number.natural, out);
    case Number::Kind::kMoney:
      return Fit(RoundedMoney(number.whole), out);
    default: {
      const double rounded = std::nearbyint(number.real);
      // The bounds of 64 bits are powers of two that numbers beyond them are rounded to, too.
      const double beyond = std::ldexp(1.0, Limits::digits);
      const double lowest = Limits::is_signed ? -beyond : 0.0;
      const bool is_within =
          Limits::digits < 63 ? rounded >= lowest : rounded > lowest || rounded == 0;
      if (!is_within || !(rounded < beyond)) return DISP_E_OVERFLOW;
      out = static_cast<Integer>(rounded);
      return S_OK;
    }
  }
}

HRESULT ToMoney(const Number& number, LONGLONG& out) {
  if (number.kind == Number::Kind::kMoney) {
    out = number.whole;
    return S_OK;
  }
  if (number.kind == Number::Kind::kReal) {
    return ToInteger(Number::Real(number.real * 10000.0), out);
  }
  const HRESULT result = ToInteger(number, out);
  if (FAILED(result)) return result;
  return __builtin_mul_overflow(out, LONGLONG{10000}, &out) ? DISP_E_OVERFLOW : S_OK;
}

HRESULT WriteNumber(const Number& number, VARTYPE type, VARIANT& out) {
  switch (type) {
    case VT_I1: {
      signed char value = 0;
      const HRESULT result = ToInteger(number, value);
      out.cVal = static_cast<CHAR>(value);
      return result;
    }
    case VT_I2:
      return ToInteger(number, out.iVal);
    case VT_I4:
    case VT_INT:
      return ToInteger(number, out.lVal);
    case VT_I8:
      return ToInteger(number, out.llVal);
    case VT_UI1:
      return ToInteger(number, out.bVal);
    case VT_UI2:
      return ToInteger(number, out.uiVal);
    case VT_UI4:
    case VT_UINT:
      return ToInteger(number, out.ulVal);
    case VT_UI8:
      return ToInteger(number, out.ullVal);
    case VT_R4: {
      const double value = number.AsReal();
      if (std::abs(value) > std::numeric_limits<float>::max()) return DISP_E_OVERFLOW;
      out.fltVal = static_cast<float>(value);
      return S_OK;
    }
    case VT_R8:
    case VT_DATE:
      out.dblVal = number.AsReal();
      return S_OK;
    case VT_CY:
      return ToMoney(number, out.cyVal.int64);
    case VT_BOOL:
      out.boolVal = number.IsZero() ? VARIANT_FALSE : VARIANT_TRUE;
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

HRESULT WriteText(const VARIANT& source, USHORT flags, VARIANT& out) {
  std::string text;
  if (source.vt == VT_BOOL && (flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL)) != 0) {
    text = source.boolVal ? "True" : "False";
  } else if (source.vt != VT_EMPTY) {
    Number number;
    const HRESULT result = ReadNumber(source, number);
    // A date's text would need a calendar.
    if (FAILED(result) || source.vt == VT_DATE) return DISP_E_TYPEMISMATCH;
    text = sabcom::FormatNumber(number, source.vt == VT_R4 ? 7 : 15);
  }
  out.bstrVal = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
  if (!out.bstrVal) return E_OUTOFMEMORY;
  for (std::size_t i = 0; i < text.size(); ++i) out.bstrVal[i] = static_cast<OLECHAR>(text[i]);
  return S_OK;
}

HRESULT WriteObject(const VARIANT& source, VARTYPE type, VARIANT& out) {
  if (source.vt != VT_UNKNOWN && source.vt != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
  if (!source.punkVal) return S_OK;
  const IID& wanted = type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
  const HRESULT result =
      source.punkVal->QueryInterface(wanted, reinterpret_cast<void**>(&out.punkVal));
  return SUCCEEDED(result) ? S_OK : DISP_E_TYPEMISMATCH;
}

// The bits of a whole number, whatever its sign; 0 for other types.
int WidthOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 8;
    case VT_I2:
    case VT_UI2:
      return 16;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
      return 32;
    case VT_I8:
    case VT_UI8:
      return 64;
    default:
      return 0;
  }
}

// What is taken for a number of the other sign bit by bit: whole numbers of the same width, and
// truth values, all bits of which are set.
bool KeepsBits(VARTYPE from, VARTYPE to) {
  return WidthOf(to) != 0 && (from == VT_BOOL || WidthOf(from) == WidthOf(to));
}

HRESULT Convert(const VARIANT& source, USHORT flags, VARTYPE type, VARIANT& out) try {
  if (source.vt == VT_NULL || source.vt == VT_ERROR) return DISP_E_TYPEMISMATCH;
  if (type == VT_EMPTY || type == VT_NULL) return S_OK;
  if (type == VT_BSTR) return WriteText(source, flags, out);
  if (type == VT_UNKNOWN || type == VT_DISPATCH) return WriteObject(source, type, out);
  if (KeepsBits(source.vt, type)) {
    out.llVal = source.vt == VT_BOOL ? source.boolVal : source.llVal;
    return S_OK;
  }
  if (type == VT_BOOL && source.vt == VT_BSTR) {
    if (const std::optional<bool> truth = ParseTruth(ViewOf(source.bstrVal))) {
      out.boolVal = *truth ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    }
  }
  Number number;
  const HRESULT result = ReadNumber(source, number);
  return SUCCEEDED(result) ? WriteNumber(number, type, out) : result;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

}  // namespace

HRESULT VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags,
                          VARTYPE type) {
  return VariantChangeTypeEx(destination, source, LOCALE_USER_DEFAULT, flags, type);
}

HRESULT VariantChangeTypeEx(VARIANTARG* destination, const VARIANTARG* source, LCID, USHORT flags,
                            VARTYPE type) {
  if (!destination || !source) return E_INVALIDARG;
  if (!sabcom::IsVariantType(type)) return DISP_E_BADVARTYPE;
  if ((type & VT_BYREF) != 0) return DISP_E_TYPEMISMATCH;
  VARIANT value;
  VariantInit(&value);
  HRESULT result = VariantCopyInd(&value, source);
  if (FAILED(result)) return result;
  VARIANT converted = value;
  if (value.vt != type) {
    VariantInit(&converted);
    result = (value.vt & VT_ARRAY) != 0 || (type & VT_ARRAY) != 0
                 ? DISP_E_TYPEMISMATCH
                 : Convert(value, flags, type, converted);
    converted.vt = type;
    VariantClear(&value);
    if (FAILED(result)) return result;
  }
  result = VariantClear(destination);
  if (FAILED(result)) {
    VariantClear(&converted);
    return result;
  }
  *destination = converted;
  return S_OK;
}
