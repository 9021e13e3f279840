#pragma once

#include <sabxml/com.h>

#include <utility>
#include <vector>

#include "base/com_ptr.h"
#include "object/error_edge.h"

struct IVeClassFactoryList;

namespace sab {

/// Creates the objects that a parser hands out. The host comes first: it may have a class of its
/// own in its list. Then the component runtime, then, where the class is not registered, this
/// library's own class table, so that an unregistered copy beside an application works.
///
/// Keep one for the length of a Generate or Load call: it remembers the host's list and the class
/// factories that it has found.
class ComponentCreator {
 public:
  ComponentCreator();

  /// Whether the host has a list, and may therefore see when an object is created.
  bool HasHostList() const { return static_cast<bool>(host_list_); }

  /// The one that serves the Generate or Load call now running on this thread; null outside of
  /// such.
  static ComponentCreator* Current() { return current_; }

  /// Makes a creator the current one for as long as it lives.
  class Scope {
   public:
    explicit Scope(ComponentCreator& creator) : outer_(std::exchange(current_, &creator)) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() { current_ = outer_; }

   private:
    ComponentCreator* outer_;
  };

  /// The routine itself, for any class: a registered third party's as well as the server's.
  HRESULT CreateInstance(REFCLSID clsid, IUnknown* outer, REFIID riid, void** object) noexcept;

  /// Creates an object of one of the server's classes. Raises ComError with the code of the
  /// failure.
  template <class Coclass>
  ComPtr<typename Coclass::Interface> Create() {
    ComPtr<typename Coclass::Interface> object;
    const HRESULT result = TryCreate<Coclass>(object);
    if (FAILED(result)) RaiseNotCreated(Coclass::kName, result);
    return object;
  }
  /// The same, but returns the code of the failure.
  template <class Coclass>
  HRESULT TryCreate(ComPtr<typename Coclass::Interface>& object) noexcept {
    return CreateInstance(Coclass::clsid, nullptr, IdOf<typename Coclass::Interface>(),
                          object.PutVoid());
  }

  /// Raises std::bad_alloc, or ComError with the code, which names the class.
  [[noreturn]] static void RaiseNotCreated(const char* class_name, HRESULT code);

 private:
  struct KnownFactory {
    CLSID clsid;
    ComPtr<IClassFactory> factory;
  };

  // A plain pointer: the thread may outlive the library.
  static thread_local ComponentCreator* current_;

  HRESULT CreateFromHost(REFCLSID clsid, IUnknown* outer, REFIID riid, void** object) noexcept;
  /// @param factory not counted: the creator keeps it
  HRESULT FindFactory(REFCLSID clsid, IClassFactory*& factory) noexcept;

  ComPtr<IUnknown> host_list_;
  std::vector<KnownFactory> factories_;
};

}  // namespace sab
