#pragma once

#include <sabxml/com.h>

namespace sab::testing {

/// The server's entry points, called as the component runtime calls them.
class ServerLibrary {
 public:
  HRESULT CanUnloadNow() const { return can_unload_now_(); }
  HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** object) const {
    return get_class_object_(clsid, riid, object);
  }
  HRESULT Register() const { return register_(); }
  HRESULT Unregister() const { return unregister_(); }
  HRESULT Install(bool install, const OLECHAR* command_line) const {
    return install_(install ? TRUE : FALSE, command_line);
  }

 private:
  friend const ServerLibrary& Server();
  ServerLibrary();

  HRESULT(STDMETHODCALLTYPE* can_unload_now_)();
  HRESULT(STDMETHODCALLTYPE* get_class_object_)(REFCLSID, REFIID, void**);
  HRESULT(STDMETHODCALLTYPE* register_)();
  HRESULT(STDMETHODCALLTYPE* unregister_)();
  HRESULT(STDMETHODCALLTYPE* install_)(BOOL, LPCOLESTR);
};

/// The library under test, loaded at the first use and kept until the process ends.
const ServerLibrary& Server();

}  // namespace sab::testing
