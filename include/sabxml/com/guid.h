#pragma once

#include "types.h"

/// A 128-bit identifier of an interface, a class or a library.
struct GUID {
  DWORD Data1;
  WORD Data2;
  WORD Data3;
  BYTE Data4[8];
};
static_assert(sizeof(GUID) == 16);

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using LPCLSID = CLSID*;
using LPIID = IID*;

inline bool operator==(REFGUID a, REFGUID b) {
  bool equal = a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3;
  for (int i = 0; i < 8; ++i) equal = equal && a.Data4[i] == b.Data4[i];
  return equal;
}

inline bool IsEqualGUID(REFGUID a, REFGUID b) { return a == b; }
inline bool IsEqualIID(REFIID a, REFIID b) { return a == b; }
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) { return a == b; }

inline constexpr GUID GUID_NULL = {};
inline constexpr IID IID_NULL = {};
inline constexpr CLSID CLSID_NULL = {};

extern "C" {
/// Writes "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper case, with its final zero.
/// @return characters written with the zero, 39; 0 when the place is shorter
int StringFromGUID2(REFGUID guid, LPOLESTR text, int capacity);
/// The same text in memory that the caller frees with CoTaskMemFree.
HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text);
HRESULT StringFromIID(REFIID iid, LPOLESTR* text);
/// Reads the braced form; any other text is taken as a ProgID. A null text gives CLSID_NULL.
/// @return CO_E_CLASSSTRING for a text that is neither
HRESULT CLSIDFromString(LPCOLESTR text, LPCLSID clsid);
/// Reads the braced form. @return CO_E_IIDSTRING
HRESULT IIDFromString(LPCOLESTR text, LPIID iid);
/// A new random identifier (RFC 4122, version 4).
HRESULT CoCreateGuid(GUID* guid);
}
