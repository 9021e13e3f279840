#pragma once

#include <sabxml/com.h>

#include "base/module_lock.h"
#include "server/class_entry.h"

namespace sab {

/// Creates objects of one class. It lives as long as the module; references and locks that others
/// hold on it keep the library loaded.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ClassEntry& entry) : entry_(entry) {}
  virtual ~ClassFactory() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  const ClassEntry& entry_;
  std::atomic<ULONG> references_{0};
};

}  // namespace sab
