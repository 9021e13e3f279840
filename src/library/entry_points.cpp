#include "base/module_lock.h"
#include "base/text.h"
#include "server/module.h"
#include "server/registration.h"

// The functions that the component runtime and its tools call. They are exported by name, through
// SabXmlParser.def on Windows and exports.map elsewhere.

namespace {

// There from the moment the library is loaded until it is unloaded.
sab::Module the_module;

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
STDAPI DllRegisterServer() {
  return sab::RegisterServer(sab::ClassTable(), sab::RegistrationScope::kMachine);
}

/// Removes from the registry what DllRegisterServer wrote, and nothing else.
STDAPI DllUnregisterServer() {
  return sab::UnregisterServer(sab::ClassTable(), sab::RegistrationScope::kMachine);
}

/// Registers or unregisters, as "regsvr32 /n /i:user" and "regsvr32 /u /n /i:user" ask for.
/// @param command_line "user" for the current user alone, in any letter case; empty or null for the
///                     machine
/// @return E_INVALIDARG for another command line
STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  const sab::TextView wanted = command_line ? command_line : OLESTR("");
  const auto is_user = [&wanted] {
    const sab::TextView user = OLESTR("user");
    for (std::size_t i = 0; i < user.size(); ++i) {
      if (i >= wanted.size() || (wanted[i] | 0x20) != user[i]) return false;
    }
    return wanted.size() == user.size();
  };
  if (!wanted.empty() && !is_user()) return E_INVALIDARG;
  const auto scope =
      wanted.empty() ? sab::RegistrationScope::kMachine : sab::RegistrationScope::kUser;
  return install ? sab::RegisterServer(sab::ClassTable(), scope)
                 : sab::UnregisterServer(sab::ClassTable(), scope);
}
