#include <sabxml/com.h>

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

LCID GetThreadLocale() { return locale; }

BOOL SetThreadLocale(LCID wanted) {
  locale = wanted;
  return TRUE;
}
