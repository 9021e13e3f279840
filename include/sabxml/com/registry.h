#pragma once

#include "result.h"
#include "types.h"

// The registry: a tree of keys with named values, kept as a text file that people can read and
// edit, in SABCOM_REGISTRY or sabcom/registry.reg below XDG_DATA_HOME (by default ~/.local/share).
// Names are compared without regard to case; one that holds a control character or half a surrogate
// pair, or is too long or too deep, gives ERROR_INVALID_PARAMETER. Each function that writes is one
// step on the file: completed when it returns, or not done. Programs that write at the same time do
// not lose each other's keys, and no open key keeps another one waiting.
//
// A file that cannot be read or trusted is never overwritten: every function then gives
// ERROR_BADDB, and the thread's error object says why. docs/host-integration.md says more.

using HKEY = struct HKEY_opaque*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using LSTATUS = LONG;
struct SECURITY_ATTRIBUTES;

inline HKEY PredefinedKey(std::uintptr_t number) { return reinterpret_cast<HKEY>(number); }
#define HKEY_CLASSES_ROOT PredefinedKey(0x80000000U)
#define HKEY_CURRENT_USER PredefinedKey(0x80000001U)
#define HKEY_LOCAL_MACHINE PredefinedKey(0x80000002U)
#define HKEY_USERS PredefinedKey(0x80000003U)

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;

inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

extern "C" {
LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR class_name, DWORD options,
                        REGSAM access, const SECURITY_ATTRIBUTES* security, PHKEY opened,
                        LPDWORD disposition);
LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD options, REGSAM access, PHKEY opened);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegFlushKey(HKEY key);
LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size);
/// Data and sizes are bytes; texts hold their final zero. @return ERROR_MORE_DATA
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size);
LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name);
/// Removes a key that has no subkeys. @return ERROR_ACCESS_DENIED when it has
LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR path);
/// Removes a key with everything below it; without a path, everything below the key.
LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR path);
LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD length, LPDWORD reserved,
                      LPWSTR class_name, LPDWORD class_length, FILETIME* written);
LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD length, LPDWORD reserved,
                      LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR class_name, LPDWORD class_length, LPDWORD reserved,
                         LPDWORD subkeys, LPDWORD longest_subkey, LPDWORD longest_class,
                         LPDWORD values, LPDWORD longest_value_name, LPDWORD longest_value,
                         LPDWORD security, FILETIME* written);
}
