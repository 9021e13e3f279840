#include "sabcom/threads.h"

#include <sabxml/com.h>

namespace {

thread_local int entered = 0;
thread_local LCID locale = LOCALE_USER_DEFAULT;

// A component that is asked at a quiet point may enter the runtime.
std::recursive_mutex threads_lock;
int threads_inside = 0;

}  // namespace

namespace sabcom {

bool IsThreadInitialized() { return entered > 0; }

QuiescentState::QuiescentState()
    : lock_(threads_lock), is_quiescent_(threads_inside == (IsThreadInitialized() ? 1 : 0)) {}

}  // namespace sabcom

HRESULT CoInitializeEx(LPVOID reserved, DWORD) {
  if (reserved) return E_INVALIDARG;
  if (entered == 0) {
    const std::lock_guard guard(threads_lock);
    ++threads_inside;
  }
  return ++entered == 1 ? S_OK : S_FALSE;
}

HRESULT CoInitialize(LPVOID reserved) { return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED); }

void CoUninitialize() {
  if (entered == 0) return;
  if (entered == 1) {
    // It may be a component's, whose code runs for the last time here.
    SetErrorInfo(0, nullptr);
    const std::lock_guard guard(threads_lock);
    --threads_inside;
  }
  --entered;
}

HRESULT OleInitialize(LPVOID reserved) { return CoInitialize(reserved); }

void OleUninitialize() { CoUninitialize(); }

LCID GetThreadLocale() { return locale; }

BOOL SetThreadLocale(LCID wanted) {
  locale = wanted;
  return TRUE;
}
