#pragma once

#include "server/component_creator.h"

namespace sab {

/// A sub-object or list that belongs to an object from its construction on. A host that may put its
/// own class in its place sees it created then; otherwise it is made when it is first asked for,
/// which is not observable, and most are never asked for. One that could not be created is tried
/// again at the next request.
template <class Coclass>
class OwnedObject {
 public:
  using Interface = typename Coclass::Interface;

  OwnedObject() noexcept {
    ComponentCreator* const current = ComponentCreator::Current();
    if (current ? current->HasHostList() : ComponentCreator().HasHostList()) Create();
  }

  /// Raises std::bad_alloc, or ComError with the code of the failure, if it cannot be created.
  Interface& operator*() {
    const HRESULT result = Create();
    if (FAILED(result)) ComponentCreator::RaiseNotCreated(Coclass::kName, result);
    return *object_;
  }
  Interface* operator->() { return &**this; }

  /// Hands out a new reference, or null with the code of the failure.
  HRESULT CopyTo(Interface** out) noexcept {
    *out = nullptr;
    const HRESULT result = Create();
    if (SUCCEEDED(result)) object_.CopyTo(out);
    return result;
  }

 private:
  HRESULT Create() noexcept {
    if (object_) return S_OK;
    ComponentCreator* const current = ComponentCreator::Current();
    return current ? current->TryCreate<Coclass>(object_)
                   : ComponentCreator().TryCreate<Coclass>(object_);
  }

  ComPtr<Interface> object_;
};

/// Hands out a new reference; see GetField.
template <class Coclass>
HRESULT GetField(OwnedObject<Coclass>& field, typename Coclass::Interface** out) noexcept {
  return out ? field.CopyTo(out) : E_POINTER;
}

}  // namespace sab
