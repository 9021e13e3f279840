#pragma once

#include "unknown.h"

// Threads, memory, and the creation of objects by class.

enum CLSCTX : DWORD {
  CLSCTX_INPROC_SERVER = 0x1,
  CLSCTX_INPROC_HANDLER = 0x2,
  CLSCTX_LOCAL_SERVER = 0x4,
  CLSCTX_REMOTE_SERVER = 0x10,
  CLSCTX_INPROC = 0x3,
  CLSCTX_SERVER = 0x15,
  CLSCTX_ALL = 0x17
};

enum COINIT : DWORD {
  COINIT_MULTITHREADED = 0x0,
  COINIT_APARTMENTTHREADED = 0x2,
  COINIT_DISABLE_OLE1DDE = 0x4,
  COINIT_SPEED_OVER_MEMORY = 0x8
};

inline constexpr LCID LANG_SYSTEM_DEFAULT = 0x0800;

extern "C" {
/// Enters the runtime on this thread; S_FALSE when it was entered before. Each success is undone by
/// one CoUninitialize, the last of which releases the thread's error object.
HRESULT CoInitialize(LPVOID reserved);
HRESULT CoInitializeEx(LPVOID reserved, DWORD mode);
void CoUninitialize();
HRESULT OleInitialize(LPVOID reserved);
void OleUninitialize();

LPVOID CoTaskMemAlloc(SIZE_T size);
LPVOID CoTaskMemRealloc(LPVOID memory, SIZE_T size);
void CoTaskMemFree(LPVOID memory);

/// For tests of what happens without memory: asked before each automation string, each object and
/// each CoTaskMemAlloc on any thread, with its size in bytes; FALSE makes it fail. Null stops
/// asking. This runtime's own.
void SabComFilterAllocations(BOOL (*may_allocate)(SIZE_T size));

/// Looks a class up by its programmatic name, through CurVer where there is one.
/// @return CO_E_CLASSSTRING for an unknown name
HRESULT CLSIDFromProgID(LPCOLESTR prog_id, LPCLSID clsid);
/// The class's ProgID in memory that the caller frees with CoTaskMemFree. @return
/// REGDB_E_CLASSNOTREG
HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* prog_id);

/// The class object of a registered in-process server; its library is loaded when needed.
/// @return CO_E_NOTINITIALIZED; REGDB_E_CLASSNOTREG; CO_E_DLLNOTFOUND with the loader's reason in
/// the
///         error object; CO_E_ERRORINDLL; whatever the library answers
HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID reserved, REFIID riid,
                         LPVOID* object);
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                         LPVOID* object);
/// Unloads every library that says it is not in use, provided that no other thread is inside the
/// runtime; such a thread may still be leaving the library's code.
void CoFreeUnusedLibraries();

/// What an in-process server exports for CoGetClassObject and CoFreeUnusedLibraries. A program that
/// is linked with a server may call them itself, with nothing registered.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object);
STDAPI DllCanUnloadNow();

/// The thread's locale, kept for code that sets and restores it.
LCID GetThreadLocale();
BOOL SetThreadLocale(LCID locale);
}
