#include "support/server_library.h"

#include "support/dynamic_library.h"

namespace sab::testing {

const ServerLibrary& Server() {
  static const ServerLibrary server = [] {
    void* const library = LoadLibraryBesideTests("SabXmlParser");
    ServerLibrary found;
    found.CanUnloadNow = FunctionIn<decltype(found.CanUnloadNow)>(library, "DllCanUnloadNow");
    found.GetClassObject = FunctionIn<decltype(found.GetClassObject)>(library, "DllGetClassObject");
    found.Register = FunctionIn<decltype(found.Register)>(library, "DllRegisterServer");
    found.Unregister = FunctionIn<decltype(found.Unregister)>(library, "DllUnregisterServer");
    found.Install = FunctionIn<decltype(found.Install)>(library, "DllInstall");
    return found;
  }();
  return server;
}

}  // namespace sab::testing
