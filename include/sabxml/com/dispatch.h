#pragma once

#include "unknown.h"
#include "variant.h"

struct ITypeInfo;

inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr DISPID DISPID_NEWENUM = -4;
inline constexpr DISPID DISPID_EVALUATE = -5;
inline constexpr MEMBERID MEMBERID_NIL = DISPID_UNKNOWN;

inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;

inline constexpr LCID LOCALE_NEUTRAL = 0;
inline constexpr LCID LOCALE_INVARIANT = 0x007F;
inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;

/// The arguments of a call, last first.
struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

/// What a member that failed says of it. The strings belong to the caller.
struct EXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  PVOID pvReserved;
  HRESULT(STDMETHODCALLTYPE* pfnDeferredFillIn)(EXCEPINFO*);
  SCODE scode;
};

/// Late binding: members by name, arguments as variants.
struct IDispatch : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count,
                                                  LCID locale, DISPID* ids) = 0;
  virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID locale, WORD flags,
                                           DISPPARAMS* parameters, VARIANT* result,
                                           EXCEPINFO* exception, UINT* bad_argument) = 0;

 protected:
  ~IDispatch() = default;
};
using LPDISPATCH = IDispatch*;

/// Walks the values of a collection.
struct IEnumVARIANT : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** clone) = 0;

 protected:
  ~IEnumVARIANT() = default;
};

inline constexpr IID IID_IDispatch = {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IEnumVARIANT = {0x00020404, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
