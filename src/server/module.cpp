#include "server/module.h"

#include <new>

namespace sab {

Module::Module() { current_ = this; }

Module::~Module() { current_ = nullptr; }

HRESULT Module::ClassObject(REFCLSID clsid, REFIID riid, void** object) noexcept {
  const std::span<const ClassEntry> classes = ClassTable();
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (!classes[i].Answers(clsid)) continue;
    const std::lock_guard guard(making_factories_);
    try {
      if (factories_.empty()) factories_.resize(classes.size());
      if (!factories_[i]) factories_[i] = std::make_unique<ClassFactory>(classes[i]);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
    return factories_[i]->QueryInterface(riid, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

const ClassEntry* Module::EntryOf(REFCLSID clsid, const IClassFactory* factory) noexcept {
  const std::lock_guard guard(making_factories_);
  for (std::size_t i = 0; i < factories_.size(); ++i) {
    if (factories_[i].get() == factory && ClassTable()[i].Answers(clsid)) return &ClassTable()[i];
  }
  return nullptr;
}

}  // namespace sab
