#pragma once

#include "types.h"

// Automation strings: UTF-16 text, length-prefixed (in bytes, four of them) and NUL-terminated.
// A null string is a legal empty one. Embedded NULs are kept. All functions are safe on any
// thread.

extern "C" {
/// A copy of a text up to its zero; null for null, and when there is no memory.
BSTR SysAllocString(const OLECHAR* text);
/// A copy of so many characters; with a null text the characters are left unset.
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
/// A string over bytes, for binary data.
BSTR SysAllocStringByteLen(const char* bytes, UINT length);
/// Replaces a string by a copy of a text; FALSE when there is no memory, and then it stays.
INT SysReAllocString(BSTR* string, const OLECHAR* text);
INT SysReAllocStringLen(BSTR* string, const OLECHAR* text, UINT length);
void SysFreeString(BSTR string);
/// Characters, without the final zero; 0 for null.
UINT SysStringLen(BSTR string);
UINT SysStringByteLen(BSTR string);
}
