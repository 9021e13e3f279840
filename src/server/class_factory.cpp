#include "server/class_factory.h"

namespace sab {

HRESULT ClassFactory::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (riid != IID_IUnknown && riid != IID_IClassFactory) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

ULONG ClassFactory::AddRef() {
  ModuleLocks::Add();
  return references_.fetch_add(1, std::memory_order_relaxed) + 1;
}

ULONG ClassFactory::Release() {
  const ULONG left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
  ModuleLocks::Remove();
  return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID riid, void** object) {
  return entry_.create(outer, riid, object);
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  if (lock) {
    ModuleLocks::Add();
  } else {
    ModuleLocks::Remove();
  }
  return S_OK;
}

}  // namespace sab
