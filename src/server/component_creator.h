#pragma once

#include <sabxml/com.h>

#include <atomic>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/com_ptr.h"
#include "object/error_edge.h"

struct IVeClassFactoryList;

namespace sab {

/// How objects of a class are created; see ClassEntry.
using CreateFunction = HRESULT (*)(IUnknown* outer, REFIID riid, void** object);

/// What is known of one of the server's classes: whether the component runtime has it from this
/// library, as of one state of the registry.
struct KnownClass {
  std::atomic<CreateFunction> create = nullptr;  ///< set before the state
  std::atomic<std::uint64_t> is_own_in_state = 0;
};

/// Creates the objects that a parser hands out. The host comes first: it may have a class of its
/// own in its list. Then the component runtime, then, where the class is not registered, this
/// library's own class table, so that an unregistered copy beside an application works.
///
/// Keep one for the length of a Generate or Load call: it remembers the host's list and the class
/// factories that it has found. That the runtime has a class from this library is remembered for
/// as long as the registry does not change; such an object is made without asking anybody.
class ComponentCreator {
 public:
  ComponentCreator();
  /// One that goes by a state of the registry that was met before, where there was no host's list:
  /// for the parts of an object that was created then.
  explicit ComponentCreator(std::uint64_t state) : state_(state) {}

  /// Whether the host has a list, and may therefore see when an object is created.
  bool HasHostList() const { return static_cast<bool>(host_list_); }

  /// Whether the class is this library's own, neither the host nor the registry having put another
  /// one in its place.
  template <class Coclass>
  bool IsOwn() noexcept {
    KnownClass& known = kKnown<Coclass>;
    return !host_list_ && (known.is_own_in_state.load(std::memory_order_acquire) == State() ||
                           Know(Coclass::clsid, known));
  }

  /// The same for what may never be created: where the registry has to be asked anew in each call,
  /// a class of which nothing has been created yet counts as not known to be own.
  template <class Coclass>
  bool IsKnownAsOwn() noexcept {
    const KnownClass& known = kKnown<Coclass>;
    return State() < kOfOneCreator
               ? IsOwn<Coclass>()
               : !host_list_ && known.is_own_in_state.load(std::memory_order_acquire) == state_;
  }

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
    if (IsOwn<Coclass>()) return CreateOwn<Coclass>(object);
    return CreateInstance(Coclass::clsid, nullptr, IdOf<typename Coclass::Interface>(),
                          object.PutVoid());
  }

  /// Creates an object of a class for which IsOwn was true once.
  template <class Coclass>
  static HRESULT CreateOwn(ComPtr<typename Coclass::Interface>& object) noexcept {
    const CreateFunction create = kKnown<Coclass>.create.load(std::memory_order_relaxed);
    return create(nullptr, IdOf<typename Coclass::Interface>(), object.PutVoid());
  }
  /// The state of the registry in which IsOwn was true the last time.
  template <class Coclass>
  static std::uint64_t StateOfOwn() noexcept {
    return kKnown<Coclass>.is_own_in_state.load(std::memory_order_relaxed);
  }

  /// Raises std::bad_alloc, or ComError with the code, which names the class.
  [[noreturn]] static void RaiseNotCreated(const char* class_name, HRESULT code);

 private:
  struct KnownFactory {
    CLSID clsid;
    ComPtr<IClassFactory> factory;
    HRESULT answer;  // of the component runtime
  };

  // Where the registry has no states that could be told apart, each creator has one of its own.
  static constexpr std::uint64_t kOfOneCreator = std::uint64_t{1} << 63;

  template <class Coclass>
  static inline constinit KnownClass kKnown = {};
  // A plain pointer: the thread may outlive the library.
  static thread_local ComponentCreator* current_;

  std::uint64_t State() noexcept { return state_ != 0 ? state_ : LookAtRegistry(); }
  std::uint64_t LookAtRegistry() noexcept;
  bool Know(REFCLSID clsid, KnownClass& known) noexcept;
  HRESULT CreateFromHost(REFCLSID clsid, IUnknown* outer, REFIID riid, void** object) noexcept;
  /// @param factory valid until the next call
  HRESULT FindFactory(REFCLSID clsid, const KnownFactory*& factory) noexcept;

  ComPtr<IUnknown> host_list_;
  std::uint64_t state_ = 0;  // of the registry; 0 until it is asked for
  std::vector<KnownFactory> factories_;
};

}  // namespace sab
