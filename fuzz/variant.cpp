// Any bytes as an automation value, arrays of values included: what is copied is the same, what
// cannot be converted stays, and what was converted says the same in its new type.

#include <sabxml/com.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "fuzz/choices.h"

namespace {

using Input = sab::fuzz::Choices;
using sab::fuzz::Require;

constexpr VARTYPE kTypes[] = {VT_EMPTY, VT_NULL, VT_I1,   VT_I2,    VT_I4,      VT_I8,  VT_INT,
                              VT_UI1,   VT_UI2,  VT_UI4,  VT_UI8,   VT_UINT,    VT_R4,  VT_R8,
                              VT_CY,    VT_DATE, VT_BOOL, VT_ERROR, VT_DECIMAL, VT_BSTR};

BSTR TakeText(Input& input) {
  const unsigned length = input.Take<std::uint8_t>() % 40;
  const BSTR text = SysAllocStringLen(nullptr, length);
  for (unsigned i = 0; i < length; ++i) {
    const auto unit = input.Take<std::uint8_t>();
    // Mostly what numbers are written with.
    text[i] = unit < 0xE0 ? OLESTR("0123456789+-.eE true#FALS")[unit % 25] : OLECHAR{unit};
  }
  return text;
}

VARIANT TakePlain(Input& input) {
  VARIANT value{};
  const VARTYPE type = kTypes[input.Take<std::uint8_t>() % std::size(kTypes)];
  if (type == VT_BSTR) {
    value.bstrVal = TakeText(input);
  } else if (type == VT_DECIMAL) {
    value.decVal = input.Take<DECIMAL>();
  } else {
    value.llVal = input.Take<LONGLONG>();
  }
  if (type == VT_BOOL) value.boolVal = value.boolVal & 1 ? VARIANT_TRUE : VARIANT_FALSE;
  value.vt = type;
  return value;
}

// A value, or an array of values that may hold the value made before.
VARIANT TakeValue(Input& input) {
  VARIANT value = TakePlain(input);
  while (input.Take<std::uint8_t>() % 4 == 1 && !input.IsEmpty()) {
    SAFEARRAYBOUND bound{input.Take<std::uint8_t>() % 8U, input.Take<LONG>()};
    SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 1, &bound);
    if (!array) continue;
    for (LONG i = 0; i < static_cast<LONG>(bound.cElements); ++i) {
      LONG index = bound.lLbound + i;
      VARIANT element = i == 0 ? value : TakePlain(input);
      Require(SafeArrayPutElement(array, &index, &element) == S_OK);
      VariantClear(&element);
    }
    if (bound.cElements == 0) VariantClear(&value);
    value.vt = VT_ARRAY | VT_VARIANT;
    value.parray = array;
  }
  return value;
}

bool AreSame(const VARIANT& a, const VARIANT& b) {
  if (a.vt != b.vt) return false;
  if (a.vt == (VT_ARRAY | VT_VARIANT)) {
    const SAFEARRAYBOUND& bound = a.parray->rgsabound[0];
    if (std::memcmp(&bound, &b.parray->rgsabound[0], sizeof bound) != 0) return false;
    for (ULONG i = 0; i < bound.cElements; ++i) {
      if (!AreSame(static_cast<VARIANT*>(a.parray->pvData)[i],
                   static_cast<VARIANT*>(b.parray->pvData)[i])) {
        return false;
      }
    }
    return true;
  }
  if (a.vt == VT_BSTR) {
    return SysStringByteLen(a.bstrVal) == SysStringByteLen(b.bstrVal) &&
           std::memcmp(a.bstrVal, b.bstrVal, SysStringByteLen(a.bstrVal)) == 0;
  }
  return std::memcmp(&a, &b, sizeof a) == 0;
}

bool IsWhole(VARTYPE type) {
  return (type >= VT_I1 && type <= VT_UINT) || type == VT_I2 || type == VT_I4;
}

void Convert(const VARIANT& value, VARTYPE type) {
  VARIANT converted{};
  converted.vt = VT_I4;
  converted.lVal = 4711;
  if (FAILED(VariantChangeType(&converted, &value, 0, type))) {
    Require(converted.vt == VT_I4 && converted.lVal == 4711);
    return;
  }
  Require(converted.vt == type);
  // A whole number that fits another type is the same number there, and so is its text.
  if (IsWhole(value.vt) && (IsWhole(type) || type == VT_BSTR || type == VT_CY)) {
    VARIANT back{};
    Require(VariantChangeType(&back, &converted, 0, VT_I8) == S_OK ||
            VariantChangeType(&back, &converted, 0, VT_UI8) == S_OK);
    VARIANT expected{};
    Require(VariantChangeType(&expected, &value, 0, back.vt) == S_OK);
    // Money is computed as a real number.
    Require(type == VT_CY || back.llVal == expected.llVal);
  }
  VariantClear(&converted);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const VARTYPE wanted = kTypes[input.Take<std::uint8_t>() % std::size(kTypes)];
  VARIANT value = TakeValue(input);
  VARIANT copy{};
  Require(VariantCopy(&copy, &value) == S_OK && AreSame(value, copy));
  Convert(value, wanted);
  Require(AreSame(value, copy));
  Require(VariantClear(&copy) == S_OK && copy.vt == VT_EMPTY);
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = &value;
  Require(VariantCopyInd(&copy, &reference) == S_OK && AreSame(value, copy));
  VariantClear(&copy);
  VariantClear(&value);
  return 0;
}
