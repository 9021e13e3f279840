#include <sabxml/com.h>
#include <sabxml/variant_size.h>

#include <cstring>

namespace {

bool IsValidType(VARTYPE type) {
  const int base = type & VT_TYPEMASK;
  return (type & (VT_VECTOR | VT_RESERVED)) == 0 &&
         (base <= VT_DECIMAL || (base >= VT_I1 && base <= VT_UINT) || base == VT_RECORD);
}

BSTR CopyString(BSTR string) {
  return SysAllocStringByteLen(reinterpret_cast<const char*>(string), SysStringByteLen(string));
}

// Makes what a bitwise copy shares with its source the copy's own.
HRESULT Own(VARIANT& copy) {
  if ((copy.vt & VT_BYREF) != 0) return S_OK;
  if ((copy.vt & VT_ARRAY) != 0) return SafeArrayCopy(copy.parray, &copy.parray);
  if (copy.vt == VT_BSTR && copy.bstrVal) {
    copy.bstrVal = CopyString(copy.bstrVal);
    return copy.bstrVal ? S_OK : E_OUTOFMEMORY;
  }
  if ((copy.vt == VT_DISPATCH || copy.vt == VT_UNKNOWN) && copy.punkVal) copy.punkVal->AddRef();
  return S_OK;
}

// Reads the value that a reference points to, still shared with its owner.
HRESULT Follow(const VARIANTARG& reference, VARIANT& value) {
  const auto type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
  value = {};
  if (!reference.byref) return E_INVALIDARG;
  if ((type & VT_ARRAY) != 0) {
    value.parray = *reference.pparray;
  } else {
    const std::size_t size = type == VT_VARIANT ? 0 : sabxml::SizeOfValue(type);
    if (size == 0) return E_INVALIDARG;
    std::memcpy(sabxml::PlaceOfValue(value, type), reference.byref, size);
  }
  value.vt = type;
  return S_OK;
}

}  // namespace

void VariantInit(VARIANTARG* variant) { std::memset(variant, 0, sizeof *variant); }

HRESULT VariantClear(VARIANTARG* variant) {
  if (!variant) return E_INVALIDARG;
  if (!IsValidType(variant->vt)) return DISP_E_BADVARTYPE;
  // It is empty before what it held is released, which may run foreign code.
  const VARIANTARG held = *variant;
  VariantInit(variant);
  if ((held.vt & VT_BYREF) != 0) return S_OK;
  if ((held.vt & VT_ARRAY) != 0) {
    const HRESULT result = SafeArrayDestroy(held.parray);
    if (FAILED(result)) *variant = held;
    return result;
  }
  if (held.vt == VT_BSTR) SysFreeString(held.bstrVal);
  if ((held.vt == VT_DISPATCH || held.vt == VT_UNKNOWN) && held.punkVal) held.punkVal->Release();
  return S_OK;
}

HRESULT VariantCopy(VARIANTARG* destination, const VARIANTARG* source) {
  if (!destination || !source) return E_INVALIDARG;
  if (!IsValidType(source->vt)) return DISP_E_BADVARTYPE;
  if (destination == source) return S_OK;
  VARIANT copy = *source;
  HRESULT result = Own(copy);
  if (FAILED(result)) return result;
  result = VariantClear(destination);
  if (FAILED(result)) {
    VariantClear(&copy);
    return result;
  }
  *destination = copy;
  return S_OK;
}

HRESULT VariantCopyInd(VARIANT* destination, const VARIANTARG* source) {
  if (!destination || !source) return E_INVALIDARG;
  if ((source->vt & VT_BYREF) == 0) return VariantCopy(destination, source);
  VARIANT value;
  if (source->vt == (VT_BYREF | VT_VARIANT)) {
    // One level of reference to variants, and then the value.
    if (!source->pvarVal || source->pvarVal->vt == (VT_BYREF | VT_VARIANT)) return E_INVALIDARG;
    value = *source->pvarVal;
    if ((value.vt & VT_BYREF) != 0) return VariantCopyInd(destination, source->pvarVal);
  } else {
    const HRESULT result = Follow(*source, value);
    if (FAILED(result)) return result;
  }
  return VariantCopy(destination, &value);
}
