#pragma once

// The basic types of the component runtime, of the same width on every target: LONG has 32 bits and
// a character of automation text 16.

#include <cstddef>
#include <cstdint>

#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define WINAPI
#define CALLBACK
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define STDMETHODIMP_(type) type STDMETHODCALLTYPE
#define EXTERN_C extern "C"
#define STDAPI EXTERN_C __attribute__((visibility("default"))) HRESULT STDAPICALLTYPE
#define STDAPI_(type) EXTERN_C __attribute__((visibility("default"))) type STDAPICALLTYPE
#define OLESTR(text) u##text

using CHAR = char;
using BYTE = std::uint8_t;
using UCHAR = std::uint8_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using WORD = std::uint16_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using FLOAT = float;
using DOUBLE = double;
using BOOL = int;
using VOID = void;
using PVOID = void*;
using LPVOID = void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;

using HRESULT = LONG;
using SCODE = LONG;
using LCID = DWORD;
using DISPID = LONG;
using MEMBERID = DISPID;
using HREFTYPE = DWORD;
using VARTYPE = USHORT;
using DATE = double;

using WCHAR = char16_t;
using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using BSTR = OLECHAR*;

/// Truth of automation: -1 or 0.
using VARIANT_BOOL = std::int16_t;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};
