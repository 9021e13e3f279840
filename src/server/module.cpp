#include "server/module.h"

#include <new>

namespace sab {

Module::Module() : factories_(ClassTable().size()) { current_ = this; }

Module::~Module() { current_ = nullptr; }

HRESULT Module::ClassObject(REFCLSID clsid, REFIID riid, void** object) noexcept {
  const std::span<const ClassEntry> classes = ClassTable();
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (*classes[i].clsid != clsid) continue;
    const std::lock_guard guard(making_factories_);
    if (!factories_[i]) factories_[i].reset(new (std::nothrow) ClassFactory(classes[i]));
    return factories_[i] ? factories_[i]->QueryInterface(riid, object) : E_OUTOFMEMORY;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace sab
