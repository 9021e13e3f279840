#pragma once

#include <sabxml/com.h>

namespace sab {

/// The count of an object from its last Release on. What it releases while it is destroyed may
/// still add and release references to it; far from 0, they do not destroy it again.
inline constexpr ULONG kDyingReferences = 0x40000000;

/// The reference count of a small object that stays on one thread and that its last reference
/// destroys. It starts with the creator's reference.
template <class Interface>
class Counted : public Interface {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      references_ = kDyingReferences;
      delete this;
    }
    return left;
  }

 protected:
  Counted() = default;
  virtual ~Counted() = default;

  /// QueryInterface of an object that has one interface beside IUnknown.
  HRESULT AnswerFor(REFIID own, REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = riid == IID_IUnknown || riid == own ? static_cast<Interface*>(this) : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

 private:
  ULONG references_ = 1;
};

}  // namespace sab
