#pragma once

#include <sabxml/com.h>

namespace sab::testing {

/// The server's entry points, called as the component runtime calls them.
struct ServerLibrary {
  HRESULT(STDMETHODCALLTYPE* CanUnloadNow)();
  HRESULT(STDMETHODCALLTYPE* GetClassObject)(REFCLSID, REFIID, void**);
  HRESULT(STDMETHODCALLTYPE* Register)();
  HRESULT(STDMETHODCALLTYPE* Unregister)();
  HRESULT(STDMETHODCALLTYPE* Install)(BOOL install, LPCOLESTR command_line);
};

/// The library under test, loaded at the first use and kept until the process ends.
const ServerLibrary& Server();

}  // namespace sab::testing
