#include "server/component_creator.h"

#include <sabxml/host.h>

#include <cstdio>
#include <new>
#include <string>
#include <utility>

#include "base/com_error.h"
#include "platform/host_library.h"
#include "platform/registry_change.h"
#include "server/module.h"

namespace sab {

thread_local ComponentCreator* ComponentCreator::current_ = nullptr;

ComponentCreator::ComponentCreator() { host_list_.Attach(HostClassFactoryList()); }

std::uint64_t ComponentCreator::LookAtRegistry() noexcept {
  static std::atomic<std::uint64_t> creators{0};
  state_ = RegistryGeneration();
  if (state_ == 0) state_ = kOfOneCreator | ++creators;
  return state_;
}

bool ComponentCreator::Know(REFCLSID clsid, KnownClass& known) noexcept {
  const KnownFactory* found = nullptr;
  Module* const module = Module::Current();
  if (!module || FAILED(FindFactory(clsid, found))) return false;
  const ClassEntry* const entry = module->EntryOf(clsid, found->factory.Get());
  if (!entry) return false;
  known.create.store(entry->create, std::memory_order_relaxed);
  // Another answer may be another one next time or on another thread, though the registry is the
  // same.
  if (SUCCEEDED(found->answer) || found->answer == REGDB_E_CLASSNOTREG) {
    known.is_own_in_state.store(State(), std::memory_order_release);
  }
  return true;
}

HRESULT ComponentCreator::CreateInstance(REFCLSID clsid, IUnknown* outer, REFIID riid,
                                         void** object) noexcept {
  *object = nullptr;
  HRESULT result = CreateFromHost(clsid, outer, riid, object);
  if (SUCCEEDED(result)) return result;
  const KnownFactory* found = nullptr;
  result = FindFactory(clsid, found);
  if (FAILED(result)) return result;
  const ComPtr<IClassFactory> factory = found->factory;  // creating may find further ones
  if (!outer) return factory->CreateInstance(nullptr, riid, object);
  ComPtr<IUnknown> created;
  result = factory->CreateInstance(outer, IID_IUnknown, created.PutVoid());
  return SUCCEEDED(result) ? created->QueryInterface(riid, object) : result;
}

HRESULT ComponentCreator::CreateFromHost(REFCLSID clsid, IUnknown* outer, REFIID riid,
                                         void** object) noexcept {
  if (!host_list_) return E_UNEXPECTED;
  ComPtr<IUnknown> created;
  const HRESULT result = static_cast<IVeClassFactoryList*>(host_list_.Get())
                             ->CreateInstance(clsid, outer, created.Put());
  if (FAILED(result)) return result;
  return created ? created->QueryInterface(riid, object) : E_UNEXPECTED;
}

HRESULT ComponentCreator::FindFactory(REFCLSID clsid, const KnownFactory*& factory) noexcept {
  for (const KnownFactory& known : factories_) {
    if (known.clsid == clsid) {
      factory = &known;
      return S_OK;
    }
  }
  ComPtr<IClassFactory> found;
  const HRESULT result = CoGetClassObject(clsid, CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER,
                                          nullptr, IID_IClassFactory, found.PutVoid());
  // Without memory it is unknown what is registered.
  if (result == E_OUTOFMEMORY) return result;
  if (FAILED(result)) {
    // The runtime's answer stands unless the class is one of ours.
    Module* const module = Module::Current();
    const HRESULT own = module ? module->ClassObject(clsid, IID_IClassFactory, found.PutVoid())
                               : CLASS_E_CLASSNOTAVAILABLE;
    if (FAILED(own)) return own == CLASS_E_CLASSNOTAVAILABLE ? result : own;
  }
  try {
    factory = &factories_.emplace_back(KnownFactory{clsid, std::move(found), result});
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

void ComponentCreator::RaiseNotCreated(const char* class_name, HRESULT code) {
  if (code == E_OUTOFMEMORY) throw std::bad_alloc();
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
  throw ComError(code, std::string("An object of the class ") + class_name +
                           " could not be created (" + text +
                           "). Check how the class is registered.");
}

}  // namespace sab
