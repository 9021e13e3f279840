#pragma once

/// The owning pointer of interfaces, for the library and its clients; header only, C++17.

#include <sabxml/com.h>

#include <cstddef>
#include <utility>

namespace sabxml {

/// Identifier of an interface; the generated header specialises it for each interface of the
/// server.
template <class Interface>
struct InterfaceId;

/// The same for every interface, those of the component runtime included.
template <class Interface>
const IID& IdOf() {
  return InterfaceId<Interface>::value;
}
template <>
inline const IID& IdOf<IUnknown>() {
  return IID_IUnknown;
}
template <>
inline const IID& IdOf<IDispatch>() {
  return IID_IDispatch;
}

/// Owns one reference to an interface.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  /// Adds a reference of its own.
  explicit ComPtr(Interface* pointer) : pointer_(pointer) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }

  Interface* Get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  Interface& operator*() const { return *pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  friend bool operator==(const ComPtr& left, const ComPtr& right) {
    return left.pointer_ == right.pointer_;
  }

  /// Releases the reference and gives the place where a callee stores a new one.
  Interface** Put() {
    Reset();
    return &pointer_;
  }
  /// The same for callees that take an untyped place (QueryInterface and its kin).
  void** PutVoid() { return reinterpret_cast<void**>(Put()); }
  /// Takes over a reference that the caller owns.
  void Attach(Interface* pointer) { ComPtr(std::move(*this)), pointer_ = pointer; }
  /// Hands the reference to the caller, who releases it.
  Interface* Detach() { return std::exchange(pointer_, nullptr); }
  void Reset() { ComPtr(std::move(*this)); }
  /// Stores a new reference for a caller; null is handed out as null.
  void CopyTo(Interface** out) const {
    Interface* const pointer = pointer_;  // AddRef may be foreign code, which may come back here
    if (pointer) pointer->AddRef();
    *out = pointer;
  }
  /// Asks the object for another interface; empty when it has none.
  template <class Other>
  ComPtr<Other> As() const {
    ComPtr<Other> other;
    if (pointer_ && FAILED(pointer_->QueryInterface(IdOf<Other>(), other.PutVoid())))
      other.Detach();
    return other;
  }

 private:
  Interface* pointer_ = nullptr;
};

}  // namespace sabxml
