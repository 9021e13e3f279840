#include <sabxml/com.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "text/ascii.h"

// Conversions among automation values. They follow what the platform's conversions give in the
// invariant locale: numbers are rounded to the nearest, halves to even; what does not fit is an
// overflow; a text must be a number from end to end.

namespace {

// A number between two types: a whole one of either sign, or a real one.
struct Number {
  enum class Kind { kSigned, kUnsigned, kReal } kind;
  LONGLONG whole = 0;
  ULONGLONG natural = 0;
  double real = 0;

  static Number Signed(LONGLONG value) { return {Kind::kSigned, value, 0, 0}; }
  static Number Unsigned(ULONGLONG value) { return {Kind::kUnsigned, 0, value, 0}; }
  static Number Real(double value) { return {Kind::kReal, 0, 0, value}; }

  double AsReal() const {
    switch (kind) {
      case Kind::kSigned:
        return static_cast<double>(whole);
      case Kind::kUnsigned:
        return static_cast<double>(natural);
      default:
        return real;
    }
  }
  bool IsZero() const { return AsReal() == 0; }
};

bool IsSpace(OLECHAR c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0x00A0 || c == 0x3000;
}

// The text as ASCII without the space around it; nothing if it holds other characters.
std::optional<std::string> ToAscii(BSTR string) {
  std::u16string_view text(string ? string : u"", SysStringLen(string));
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  std::string ascii;
  for (const OLECHAR c : text) {
    if (c == 0 || c > 0x7E) return std::nullopt;
    ascii.push_back(static_cast<char>(c));
  }
  return ascii;
}

std::optional<Number> ParseNumber(BSTR string) {
  const std::optional<std::string> text = ToAscii(string);
  if (!text || text->empty()) return std::nullopt;
  const char* first = text->data();
  const char* const last = first + text->size();
  if (*first == '+') ++first;
  // "inf", "nan" and a second sign are no numbers here.
  const char* const digits =
      first != last && *first == '-' && first == text->data() ? first + 1 : first;
  if (digits == last || !(*digits == '.' || (*digits >= '0' && *digits <= '9')))
    return std::nullopt;
  LONGLONG whole = 0;
  auto [end, error] = std::from_chars(first, last, whole);
  if (error == std::errc() && end == last) return Number::Signed(whole);
  ULONGLONG natural = 0;
  const auto unsigned_result = std::from_chars(first, last, natural);
  if (unsigned_result.ec == std::errc() && unsigned_result.ptr == last) {
    return Number::Unsigned(natural);
  }
  double real = 0;
  const auto real_result = std::from_chars(first, last, real);
  if (real_result.ptr != last) return std::nullopt;
  if (real_result.ec == std::errc::result_out_of_range)
    real = std::numeric_limits<double>::infinity();
  return Number::Real(real);
}

std::optional<bool> ParseTruth(BSTR string) {
  std::optional<std::string> text = ToAscii(string);
  if (!text) return std::nullopt;
  for (char& c : *text) c = sab::ToLowerAscii(c);
  if (*text == "true" || *text == "#true#") return true;
  if (*text == "false" || *text == "#false#") return false;
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
      number = Number::Real(static_cast<double>(source.cyVal.int64) / 10000.0);
      return S_OK;
    case VT_BSTR: {
      const std::optional<Number> parsed = ParseNumber(source.bstrVal);
      if (!parsed) return DISP_E_TYPEMISMATCH;
      number = *parsed;
      return S_OK;
    }
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

template <class Integer>
HRESULT ToInteger(const Number& number, Integer& out) {
  using Limits = std::numeric_limits<Integer>;
  switch (number.kind) {
    case Number::Kind::kSigned:
      if (!std::in_range<Integer>(number.whole)) return DISP_E_OVERFLOW;
      out = static_cast<Integer>(number.whole);
      return S_OK;
    case Number::Kind::kUnsigned:
      if (!std::in_range<Integer>(number.natural)) return DISP_E_OVERFLOW;
      out = static_cast<Integer>(number.natural);
      return S_OK;
    default: {
      const double rounded = std::nearbyint(number.real);
      // The upper bound as a power of two is exact where the greatest integer itself is not.
      const double beyond = std::ldexp(1.0, Limits::digits);
      const double lowest = Limits::is_signed ? -beyond : 0.0;
      if (!(rounded >= lowest && rounded < beyond)) return DISP_E_OVERFLOW;
      out = static_cast<Integer>(rounded);
      return S_OK;
    }
  }
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
    case VT_ERROR:
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
      return std::isfinite(out.dblVal) || number.kind != Number::Kind::kReal ? S_OK
                                                                             : DISP_E_OVERFLOW;
    case VT_CY:
      return ToInteger(Number::Real(number.AsReal() * 10000.0), out.cyVal.int64);
    case VT_BOOL:
      out.boolVal = number.IsZero() ? VARIANT_FALSE : VARIANT_TRUE;
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

BSTR FromAscii(std::string_view ascii) {
  const BSTR string = SysAllocStringLen(nullptr, static_cast<UINT>(ascii.size()));
  if (string) {
    for (std::size_t i = 0; i < ascii.size(); ++i) string[i] = static_cast<OLECHAR>(ascii[i]);
  }
  return string;
}

// Digits that a reader trusts: 7 of a float, 15 of a double, "1E+20" for what is large.
BSTR FormatReal(double value, int digits) {
  std::array<char, 64> buffer;
  auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::general, digits);
  std::string text(buffer.data(), end);
  const std::size_t exponent = text.find('e');
  if (exponent != std::string::npos) {
    text[exponent] = 'E';
  } else if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
  }
  return FromAscii(text);
}

HRESULT WriteText(const VARIANT& source, USHORT flags, VARIANT& out) {
  switch (source.vt) {
    case VT_EMPTY:
      out.bstrVal = FromAscii("");
      break;
    case VT_BOOL:
      out.bstrVal = (flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL)) != 0
                        ? FromAscii(source.boolVal ? "True" : "False")
                        : FromAscii(source.boolVal ? "-1" : "0");
      break;
    case VT_R4:
      out.bstrVal = FormatReal(source.fltVal, 7);
      break;
    case VT_R8:
      out.bstrVal = FormatReal(source.dblVal, 15);
      break;
    case VT_CY:
      out.bstrVal = FormatReal(static_cast<double>(source.cyVal.int64) / 10000.0, 15);
      break;
    default: {
      Number number;
      const HRESULT result = ReadNumber(source, number);
      if (FAILED(result) || number.kind == Number::Kind::kReal) return DISP_E_TYPEMISMATCH;
      out.bstrVal =
          FromAscii(number.kind == Number::Kind::kSigned ? std::to_string(number.whole)
                                                         : std::to_string(number.natural));
      break;
    }
  }
  return out.bstrVal ? S_OK : E_OUTOFMEMORY;
}

HRESULT WriteObject(const VARIANT& source, VARTYPE type, VARIANT& out) {
  if (source.vt != VT_UNKNOWN && source.vt != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
  if (!source.punkVal) return S_OK;
  const IID& wanted = type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
  const HRESULT result =
      source.punkVal->QueryInterface(wanted, reinterpret_cast<void**>(&out.punkVal));
  return SUCCEEDED(result) ? S_OK : DISP_E_TYPEMISMATCH;
}

HRESULT Convert(const VARIANT& source, USHORT flags, VARTYPE type, VARIANT& out) try {
  if (type == VT_BSTR) return WriteText(source, flags, out);
  if (type == VT_UNKNOWN || type == VT_DISPATCH) return WriteObject(source, type, out);
  if (type == VT_EMPTY) return S_OK;
  if (type == VT_BOOL && source.vt == VT_BSTR) {
    if (const std::optional<bool> truth = ParseTruth(source.bstrVal)) {
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
