#pragma once

#include "types.h"
#include "variant.h"

// One-dimensional arrays of automation values. Arrays of more dimensions are not offered: creating
// one gives null.

inline constexpr USHORT FADF_AUTO = 0x0001;
inline constexpr USHORT FADF_STATIC = 0x0002;
inline constexpr USHORT FADF_EMBEDDED = 0x0004;
inline constexpr USHORT FADF_FIXEDSIZE = 0x0010;
inline constexpr USHORT FADF_HAVEIID = 0x0040;
inline constexpr USHORT FADF_HAVEVARTYPE = 0x0080;
inline constexpr USHORT FADF_BSTR = 0x0100;
inline constexpr USHORT FADF_UNKNOWN = 0x0200;
inline constexpr USHORT FADF_DISPATCH = 0x0400;
inline constexpr USHORT FADF_VARIANT = 0x0800;

extern "C" {
/// A new array with every element zero; null for a type it cannot hold or when there is no memory.
SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lower_bound, ULONG count);
/// Frees the elements and the array. @return DISP_E_ARRAYISLOCKED
HRESULT SafeArrayDestroy(SAFEARRAY* array);
HRESULT SafeArrayDestroyData(SAFEARRAY* array);
HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy);
/// Changes the bound; elements beyond it are freed, new ones are zero.
HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound);
HRESULT SafeArrayLock(SAFEARRAY* array);
HRESULT SafeArrayUnlock(SAFEARRAY* array);
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
UINT SafeArrayGetDim(SAFEARRAY* array);
UINT SafeArrayGetElemsize(SAFEARRAY* array);
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);
/// Copies an element out; the caller owns the copy. @return DISP_E_BADINDEX
HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element);
/// Copies a value in. Strings, interfaces and variants are passed as what they are, not as the
/// address of it, except variants.
HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element);
HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element);
}
