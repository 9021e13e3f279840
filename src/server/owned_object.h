#pragma once

#include "server/component_creator.h"

namespace sab {

/// A sub-object or list that belongs to an object from its construction on. A host that may put its
/// own class in its place sees it created then; otherwise it is made when it is first asked for,
/// which nobody can tell, and most are never asked for. Null when it cannot be created.
template <class Coclass>
class OwnedObject {
 public:
  using Interface = typename Coclass::Interface;

  OwnedObject() {
    ComponentCreator* const current = ComponentCreator::Current();
    if (current ? current->HasHostList() : ComponentCreator().HasHostList()) Get();
  }

  Interface* Get() {
    if (!object_) {
      ComponentCreator* const current = ComponentCreator::Current();
      object_ = current ? current->TryCreate<Coclass>() : ComponentCreator().TryCreate<Coclass>();
    }
    return object_.Get();
  }

 private:
  ComPtr<Interface> object_;
};

/// Hands out a new reference; see GetField.
template <class Coclass>
HRESULT GetField(OwnedObject<Coclass>& field, typename Coclass::Interface** out) noexcept {
  if (!out) return E_POINTER;
  *out = field.Get();
  if (*out) (*out)->AddRef();
  return S_OK;
}

}  // namespace sab
