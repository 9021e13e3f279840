#pragma once

#include "types.h"

// Result codes. The values are those of the automation interfaces that this runtime mirrors.

#define SUCCEEDED(result) (static_cast<HRESULT>(result) >= 0)
#define FAILED(result) (static_cast<HRESULT>(result) < 0)
#define HRESULT_CODE(result) ((result)&0xFFFF)
#define HRESULT_FACILITY(result) (((result) >> 16) & 0x1FFF)
#define MAKE_HRESULT(severity, facility, code)                      \
  static_cast<HRESULT>(static_cast<std::uint32_t>(severity) << 31 | \
                       static_cast<std::uint32_t>(facility) << 16 | \
                       static_cast<std::uint32_t>(code))
#define HRESULT_FROM_WIN32(error)    \
  (static_cast<LONG>(error) <= 0     \
       ? static_cast<HRESULT>(error) \
       : static_cast<HRESULT>((static_cast<std::uint32_t>(error) & 0xFFFFU) | 0x80070000U))

namespace sabcom {
constexpr HRESULT Code(std::uint32_t value) { return static_cast<HRESULT>(value); }
}  // namespace sabcom

inline constexpr int FACILITY_ITF = 4;
inline constexpr int FACILITY_WIN32 = 7;
inline constexpr int SEVERITY_SUCCESS = 0;
inline constexpr int SEVERITY_ERROR = 1;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT NOERROR = 0;
inline constexpr HRESULT E_NOTIMPL = sabcom::Code(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = sabcom::Code(0x80004002);
inline constexpr HRESULT E_POINTER = sabcom::Code(0x80004003);
inline constexpr HRESULT E_ABORT = sabcom::Code(0x80004004);
inline constexpr HRESULT E_FAIL = sabcom::Code(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = sabcom::Code(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = sabcom::Code(0x80070005);
inline constexpr HRESULT E_HANDLE = sabcom::Code(0x80070006);
inline constexpr HRESULT E_OUTOFMEMORY = sabcom::Code(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = sabcom::Code(0x80070057);
inline constexpr HRESULT E_BOUNDS = sabcom::Code(0x8000000B);

inline constexpr HRESULT CLASS_E_NOAGGREGATION = sabcom::Code(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = sabcom::Code(0x80040111);
inline constexpr HRESULT REGDB_E_READREGDB = sabcom::Code(0x80040150);
inline constexpr HRESULT REGDB_E_WRITEREGDB = sabcom::Code(0x80040151);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = sabcom::Code(0x80040154);
inline constexpr HRESULT CO_E_NOTINITIALIZED = sabcom::Code(0x800401F0);
inline constexpr HRESULT CO_E_CLASSSTRING = sabcom::Code(0x800401F3);
inline constexpr HRESULT CO_E_IIDSTRING = sabcom::Code(0x800401F4);
inline constexpr HRESULT CO_E_DLLNOTFOUND = sabcom::Code(0x800401F8);
inline constexpr HRESULT CO_E_ERRORINDLL = sabcom::Code(0x800401F9);
inline constexpr HRESULT RPC_E_CHANGED_MODE = sabcom::Code(0x80010106);
inline constexpr HRESULT SELFREG_E_TYPELIB = sabcom::Code(0x80040200);
inline constexpr HRESULT SELFREG_E_CLASS = sabcom::Code(0x80040201);

inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = sabcom::Code(0x80020001);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = sabcom::Code(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = sabcom::Code(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = sabcom::Code(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = sabcom::Code(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = sabcom::Code(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = sabcom::Code(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = sabcom::Code(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = sabcom::Code(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = sabcom::Code(0x8002000B);
inline constexpr HRESULT DISP_E_UNKNOWNLCID = sabcom::Code(0x8002000C);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = sabcom::Code(0x8002000D);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = sabcom::Code(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = sabcom::Code(0x8002000F);
inline constexpr HRESULT DISP_E_BADCALLEE = sabcom::Code(0x80020010);
inline constexpr HRESULT DISP_E_NOTACOLLECTION = sabcom::Code(0x80020011);
inline constexpr HRESULT DISP_E_DIVBYZERO = sabcom::Code(0x80020012);
inline constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = sabcom::Code(0x8002802B);
inline constexpr HRESULT TYPE_E_TYPEMISMATCH = sabcom::Code(0x80028CA0);
inline constexpr HRESULT TYPE_E_LIBNOTREGISTERED = sabcom::Code(0x8002801D);
inline constexpr HRESULT TYPE_E_CANTLOADLIBRARY = sabcom::Code(0x80029C4A);

// Errors of the system, as registry functions return them.
inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LONG ERROR_INVALID_DATA = 13;
inline constexpr LONG ERROR_OUTOFMEMORY = 14;
inline constexpr LONG ERROR_WRITE_FAULT = 29;
inline constexpr LONG ERROR_SHARING_VIOLATION = 32;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_DISK_FULL = 112;
inline constexpr LONG ERROR_ALREADY_EXISTS = 183;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_NO_MORE_ITEMS = 259;
inline constexpr LONG ERROR_BADDB = 1009;
inline constexpr LONG ERROR_BADKEY = 1010;
inline constexpr LONG ERROR_CANTWRITE = 1013;
