#include "platform/com/modules.h"

#include <dlfcn.h>

#include <mutex>
#include <vector>

#include "platform/com/errors.h"
#include "platform/com/utf.h"

namespace sabcom {
namespace {

struct Module {
  std::u16string path;
  void* library;
  HRESULT(STDAPICALLTYPE* get_class_object)(REFCLSID, REFIID, void**);
  HRESULT(STDAPICALLTYPE* can_unload_now)();
};

std::mutex modules_lock;

std::vector<Module>& Modules() {
  static auto* const modules = new std::vector<Module>;  // never destroyed: objects may live longer
  return *modules;
}

// Libraries are loaded under the lock, so that none is loaded twice or unloaded while it answers.
HRESULT Load(const std::u16string& path, Module& module) {
  for (const Module& known : Modules()) {
    if (known.path == path) {
      module = known;
      return S_OK;
    }
  }
  module = {path, dlopen(ToUtf8(path).c_str(), RTLD_NOW | RTLD_LOCAL), nullptr, nullptr};
  if (!module.library) {
    Explain(dlerror());
    return CO_E_DLLNOTFOUND;
  }
  module.get_class_object = reinterpret_cast<decltype(module.get_class_object)>(
      dlsym(module.library, "DllGetClassObject"));
  module.can_unload_now =
      reinterpret_cast<decltype(module.can_unload_now)>(dlsym(module.library, "DllCanUnloadNow"));
  if (!module.get_class_object) {
    Explain(ToUtf8(path) + " is no component server: it does not export DllGetClassObject.");
    dlclose(module.library);
    return CO_E_ERRORINDLL;
  }
  Modules().push_back(module);
  return S_OK;
}

}  // namespace

HRESULT GetClassObject(const std::u16string& path, REFCLSID clsid, REFIID riid, void** object) {
  Module module{};
  {
    const std::lock_guard guard(modules_lock);
    const HRESULT result = Load(path, module);
    if (FAILED(result)) return result;
  }
  return module.get_class_object(clsid, riid, object);
}

void FreeUnusedModules() noexcept {
  const std::lock_guard guard(modules_lock);
  std::erase_if(Modules(), [](const Module& module) {
    if (!module.can_unload_now || module.can_unload_now() != S_OK) return false;
    dlclose(module.library);
    return true;
  });
}

}  // namespace sabcom
