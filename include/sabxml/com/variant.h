#pragma once

#include "bstr.h"
#include "result.h"
#include "types.h"
#include "unknown.h"

struct IDispatch;
struct IRecordInfo;

/// Types of a variant's value.
enum VARENUM : USHORT {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_VOID = 24,
  VT_HRESULT = 25,
  VT_PTR = 26,
  VT_SAFEARRAY = 27,
  VT_CARRAY = 28,
  VT_USERDEFINED = 29,
  VT_LPSTR = 30,
  VT_LPWSTR = 31,
  VT_RECORD = 36,
  VT_INT_PTR = 37,
  VT_UINT_PTR = 38,
  VT_VECTOR = 0x1000,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_RESERVED = 0x8000,
  VT_ILLEGAL = 0xFFFF,
  VT_TYPEMASK = 0x0FFF
};

/// Money: a 64-bit count of ten-thousandths.
union CY {
  __extension__ struct {
    ULONG Lo;
    LONG Hi;
  };
  LONGLONG int64;
};

/// A 96-bit decimal number; carried, not computed with.
struct DECIMAL {
  USHORT wReserved;
  __extension__ union {
    __extension__ struct {
      BYTE scale;
      BYTE sign;
    };
    USHORT signscale;
  };
  ULONG Hi32;
  __extension__ union {
    __extension__ struct {
      ULONG Lo32;
      ULONG Mid32;
    };
    ULONGLONG Lo64;
  };
};

struct SAFEARRAYBOUND {
  ULONG cElements;
  LONG lLbound;
};

/// An array that knows its bounds; see safearray.h.
struct SAFEARRAY {
  USHORT cDims;
  USHORT fFeatures;
  ULONG cbElements;
  ULONG cLocks;
  PVOID pvData;
  SAFEARRAYBOUND rgsabound[1];
};
using LPSAFEARRAY = SAFEARRAY*;

/// A value of any automation type.
struct tagVARIANT {
  __extension__ union {
    __extension__ struct {
      VARTYPE vt;
      WORD wReserved1;
      WORD wReserved2;
      WORD wReserved3;
      __extension__ union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        tagVARIANT* pvarVal;
        PVOID byref;
        CHAR cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        DECIMAL* pdecVal;
        CHAR* pcVal;
        USHORT* puiVal;
        ULONG* pulVal;
        ULONGLONG* pullVal;
        INT* pintVal;
        UINT* puintVal;
        __extension__ struct {
          PVOID pvRecord;
          IRecordInfo* pRecInfo;
        };
      };
    };
    DECIMAL decVal;
  };
};
using VARIANT = tagVARIANT;
using VARIANTARG = VARIANT;
using LPVARIANT = VARIANT*;

static_assert(sizeof(VARIANT) == 8 + 2 * sizeof(void*));
static_assert(offsetof(VARIANT, lVal) == 8);
static_assert(sizeof(DECIMAL) == 16);

inline constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
inline constexpr USHORT VARIANT_ALPHABOOL = 0x02;  ///< "True" and "False" instead of "-1" and "0"
inline constexpr USHORT VARIANT_LOCALBOOL = 0x10;

#define V_VT(x) ((x)->vt)
#define V_ISBYREF(x) (V_VT(x) & VT_BYREF)
#define V_ISARRAY(x) (V_VT(x) & VT_ARRAY)
#define V_I1(x) ((x)->cVal)
#define V_UI1(x) ((x)->bVal)
#define V_I2(x) ((x)->iVal)
#define V_UI2(x) ((x)->uiVal)
#define V_I4(x) ((x)->lVal)
#define V_UI4(x) ((x)->ulVal)
#define V_I8(x) ((x)->llVal)
#define V_UI8(x) ((x)->ullVal)
#define V_INT(x) ((x)->intVal)
#define V_UINT(x) ((x)->uintVal)
#define V_R4(x) ((x)->fltVal)
#define V_R8(x) ((x)->dblVal)
#define V_CY(x) ((x)->cyVal)
#define V_DATE(x) ((x)->date)
#define V_BSTR(x) ((x)->bstrVal)
#define V_BOOL(x) ((x)->boolVal)
#define V_ERROR(x) ((x)->scode)
#define V_UNKNOWN(x) ((x)->punkVal)
#define V_DISPATCH(x) ((x)->pdispVal)
#define V_ARRAY(x) ((x)->parray)
#define V_BYREF(x) ((x)->byref)
#define V_I4REF(x) ((x)->plVal)
#define V_BSTRREF(x) ((x)->pbstrVal)
#define V_BOOLREF(x) ((x)->pboolVal)
#define V_VARIANTREF(x) ((x)->pvarVal)
#define V_ARRAYREF(x) ((x)->pparray)
#define V_DISPATCHREF(x) ((x)->ppdispVal)
#define V_UNKNOWNREF(x) ((x)->ppunkVal)

extern "C" {
/// Makes a variant empty without looking at what it held.
void VariantInit(VARIANTARG* variant);
/// Frees what the variant owns and makes it empty. @return DISP_E_ARRAYISLOCKED, DISP_E_BADVARTYPE
HRESULT VariantClear(VARIANTARG* variant);
/// Clears the destination and makes it an independent copy. By-reference values stay references.
HRESULT VariantCopy(VARIANTARG* destination, const VARIANTARG* source);
/// The same, with by-reference values followed and copied.
HRESULT VariantCopyInd(VARIANT* destination, const VARIANTARG* source);
/// Converts among numbers, strings, truth values and interfaces, whatever the thread's locale.
/// Destination and source may be the same. @return DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW
HRESULT VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags,
                          VARTYPE type);
HRESULT VariantChangeTypeEx(VARIANTARG* destination, const VARIANTARG* source, LCID locale,
                            USHORT flags, VARTYPE type);
}
