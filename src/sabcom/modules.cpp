#include "sabcom/modules.h"

#include <dlfcn.h>

#include <list>
#include <mutex>

#include "sabcom/errors.h"
#include "sabcom/utf.h"

namespace sabcom {
namespace {

using GetClassObjectFunction = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

struct Module {
  std::u16string path;
  void* library = nullptr;
  GetClassObjectFunction get_class_object = nullptr;
  HRESULT(STDAPICALLTYPE* can_unload_now)() = nullptr;
};

std::mutex modules_lock;  // no code of a library runs under it

std::list<Module>& Modules() {
  static auto* const modules = new std::list<Module>;  // never destroyed: objects may live longer
  return *modules;
}

const Module* Find(const std::u16string& path) {
  for (const Module& known : Modules()) {
    if (known.path == path) return &known;
  }
  return nullptr;
}

// A module remains while the calling thread is inside the runtime.
HRESULT Load(const std::u16string& path, GetClassObjectFunction& get_class_object) {
  {
    const std::lock_guard guard(modules_lock);
    if (const Module* const known = Find(path)) {
      get_class_object = known->get_class_object;
      return S_OK;
    }
  }
  std::list<Module> loaded{{path}};
  Module& module = loaded.front();
  // Libraries are counted, so two threads may load the same one.
  module.library = dlopen(ToUtf8(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module.library) {
    Explain(dlerror());
    return CO_E_DLLNOTFOUND;
  }
  module.get_class_object =
      reinterpret_cast<GetClassObjectFunction>(dlsym(module.library, "DllGetClassObject"));
  module.can_unload_now =
      reinterpret_cast<decltype(module.can_unload_now)>(dlsym(module.library, "DllCanUnloadNow"));
  if (!module.get_class_object) {
    dlclose(module.library);
    Explain(ToUtf8(path) + " is no component server: it does not export DllGetClassObject.");
    return CO_E_ERRORINDLL;
  }
  get_class_object = module.get_class_object;
  {
    const std::lock_guard guard(modules_lock);
    if (!Find(path)) Modules().splice(Modules().end(), loaded);
  }
  for (const Module& superfluous : loaded) dlclose(superfluous.library);
  return S_OK;
}

}  // namespace

HRESULT GetClassObject(const std::u16string& path, REFCLSID clsid, REFIID riid, void** object) {
  GetClassObjectFunction get_class_object = nullptr;
  const HRESULT result = Load(path, get_class_object);
  return FAILED(result) ? result : get_class_object(clsid, riid, object);
}

void FreeUnusedModules() noexcept {
  std::list<Module> unused;
  {
    // Even a thread that has released its last object may still be on its way out of the library.
    const QuiescentState quiet;
    static bool is_asking = false;
    if (!quiet || is_asking) return;
    is_asking = true;
    for (auto module = Modules().begin(); module != Modules().end();) {
      const auto current = module++;
      if (!current->can_unload_now || current->can_unload_now() != S_OK) continue;
      const std::lock_guard guard(modules_lock);
      unused.splice(unused.end(), Modules(), current);
    }
    is_asking = false;
  }
  for (const Module& module : unused) dlclose(module.library);
}

}  // namespace sabcom
