#include "common/module_lock.h"
#include "server/module.h"
#include "server/registration.h"

// The four functions that the component runtime calls. They are exported by name, through
// SabXmlParser.def on Windows and exports.map elsewhere.

namespace {

// There from the moment the library is loaded until it is unloaded.
const sab::Module kModule;

}  // namespace

/// @return S_OK when no object and no class-factory lock is left, else S_FALSE
STDAPI DllCanUnloadNow() { return sab::ModuleLocks::Count() == 0 ? S_OK : S_FALSE; }

/// Hands out the class factory of one of the server's classes.
/// @return E_POINTER for a null place; E_UNEXPECTED when the library is not initialised;
///         CLASS_E_CLASSNOTAVAILABLE for a class that the server does not have
STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv) {
  if (!ppv) return E_POINTER;
  *ppv = nullptr;
  sab::Module* const module = sab::Module::Current();
  return module ? module->ClassObject(rclsid, riid, ppv) : E_UNEXPECTED;
}

/// Writes the server's classes and its type library to the registry; stops at the first failure.
STDAPI DllRegisterServer() { return sab::RegisterServer(sab::ClassTable()); }

/// Removes from the registry what DllRegisterServer wrote, and nothing else.
STDAPI DllUnregisterServer() { return sab::UnregisterServer(sab::ClassTable()); }
