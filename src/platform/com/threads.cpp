#include <sabxml/com.h>

#include <cstdlib>

#include "platform/com/threads.h"

namespace {

thread_local int entered = 0;
thread_local LCID locale = LOCALE_USER_DEFAULT;

}  // namespace

bool sabcom::IsThreadInitialized() { return entered > 0; }

HRESULT CoInitializeEx(LPVOID reserved, DWORD) {
  if (reserved) return E_INVALIDARG;
  return ++entered == 1 ? S_OK : S_FALSE;
}

HRESULT CoInitialize(LPVOID reserved) { return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED); }

void CoUninitialize() {
  if (entered > 0) --entered;
}

HRESULT OleInitialize(LPVOID reserved) { return CoInitialize(reserved); }

void OleUninitialize() { CoUninitialize(); }

LPVOID CoTaskMemAlloc(SIZE_T size) { return std::malloc(size ? size : 1); }

LPVOID CoTaskMemRealloc(LPVOID memory, SIZE_T size) {
  if (memory && size == 0) {
    std::free(memory);
    return nullptr;
  }
  return std::realloc(memory, size);
}

void CoTaskMemFree(LPVOID memory) { std::free(memory); }

LCID GetThreadLocale() { return locale; }

BOOL SetThreadLocale(LCID wanted) {
  locale = wanted;
  return TRUE;
}
