#pragma once

#include <cstdint>

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
    if (ComponentCreator* const current = ComponentCreator::Current()) {
      if (current->HasHostList()) {
        Create();
      } else if (current->IsKnownAsOwn<Coclass>()) {
        object_ = kOwn;
      }
    } else if (ComponentCreator().HasHostList()) {
      Create();
    }
  }
  OwnedObject(const OwnedObject&) = delete;
  OwnedObject& operator=(const OwnedObject&) = delete;
  ~OwnedObject() {
    if (IsCreated()) Get()->Release();
  }

  /// Raises std::bad_alloc, or ComError with the code of the failure, if it cannot be created.
  Interface& operator*() {
    const HRESULT result = Create();
    if (!IsCreated()) ComponentCreator::RaiseNotCreated(Coclass::kName, result);
    return *Get();
  }
  Interface* operator->() { return &**this; }

  /// Hands out a new reference, or null with the code of the failure.
  HRESULT CopyTo(Interface** out) noexcept {
    *out = nullptr;
    const HRESULT result = Create();
    if (IsCreated()) ComPtr<Interface>(Get()).CopyTo(out);
    return result;
  }

 private:
  // Instead of a pointer: not known where it comes from, or known to be of this library's class.
  static constexpr std::uintptr_t kUnknown = 0;
  static constexpr std::uintptr_t kOwn = 1;

  bool IsCreated() const { return object_ > kOwn; }
  Interface* Get() const { return reinterpret_cast<Interface*>(object_); }

  HRESULT Create() noexcept {
    return IsCreated() ? S_OK : object_ == kOwn ? CreateOwn() : CreateAny();
  }
  HRESULT CreateOwn() noexcept {
    ComponentCreator creator(ComponentCreator::StateOfOwn<Coclass>());
    const ComponentCreator::Scope scope(creator);
    ComPtr<Interface> created;
    return Keep(ComponentCreator::CreateOwn<Coclass>(created), created);
  }
  HRESULT CreateAny() noexcept {
    ComponentCreator* const current = ComponentCreator::Current();
    ComPtr<Interface> created;
    return Keep(current ? current->TryCreate<Coclass>(created)
                        : ComponentCreator().TryCreate<Coclass>(created),
                created);
  }
  HRESULT Keep(HRESULT result, ComPtr<Interface>& created) noexcept {
    // Foreign code that creates it may have asked for it meanwhile.
    if (created && !IsCreated()) object_ = reinterpret_cast<std::uintptr_t>(created.Detach());
    return result;
  }

  std::uintptr_t object_ = kUnknown;
};

/// Hands out a new reference; see GetField.
template <class Coclass>
HRESULT GetField(OwnedObject<Coclass>& field, typename Coclass::Interface** out) noexcept {
  return out ? field.CopyTo(out) : E_POINTER;
}

}  // namespace sab
