#include "support/server_library.h"

#include "support/dynamic_library.h"

namespace sab::testing {

ServerLibrary::ServerLibrary() {
  void* const library = LoadLibraryBesideTests("SabXmlParser");
  can_unload_now_ = FunctionIn<decltype(can_unload_now_)>(library, "DllCanUnloadNow");
  get_class_object_ = FunctionIn<decltype(get_class_object_)>(library, "DllGetClassObject");
  register_ = FunctionIn<decltype(register_)>(library, "DllRegisterServer");
  unregister_ = FunctionIn<decltype(unregister_)>(library, "DllUnregisterServer");
  install_ = FunctionIn<decltype(install_)>(library, "DllInstall");
}

const ServerLibrary& Server() {
  static const ServerLibrary library;
  return library;
}

}  // namespace sab::testing
