#pragma once

#include <sabxml/com.h>

#include <new>
#include <utility>

#include "base/com_ptr.h"
#include "base/counted.h"
#include "base/module_lock.h"

namespace sab {

/// An interface that few ask an object for. What answers it is made only then, so that objects stay
/// small; it keeps its object alive and shares its identity.
template <class Interface>
class TearOff : public Counted<Interface>, private LiveObject {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) final {
    if (!object) return E_POINTER;
    if (riid != iid_) return object_->QueryInterface(riid, object);
    return this->AnswerFor(iid_, riid, object);
  }

 protected:
  TearOff(IUnknown* object, REFIID iid) : object_(object), iid_(iid) {}

  /// Hands out a new tear-off of the class. @return E_OUTOFMEMORY
  template <class Class, class... Arguments>
  static HRESULT CreateAs(void** out, Arguments&&... arguments) noexcept {
    auto* const created = new (std::nothrow) Class(std::forward<Arguments>(arguments)...);
    if (!created) return E_OUTOFMEMORY;
    *out = static_cast<Interface*>(created);
    return S_OK;
  }

 private:
  ComPtr<IUnknown> object_;
  const IID& iid_;
};

}  // namespace sab
