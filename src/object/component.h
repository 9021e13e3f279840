#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <string_view>
#include <utility>

#include "automation/dispatch.h"
#include "base/com_ptr.h"
#include "base/counted.h"
#include "base/module_lock.h"
#include "generated/coclasses.h"
#include "generated/dispatch_tables.h"
#include "generated/edge.h"
#include "object/class_facts.h"
#include "object/error_edge.h"
#include "object/fields.h"
#include "object/release_queue.h"
#include "object/task_memory.h"

namespace sab {

/// For classes that keep no properties as fields.
struct NoFields {};

/// The name of a class in its ProgID; a class that was registered under another name than its own
/// specialises it.
template <class Coclass>
inline constexpr std::string_view kRegisteredName = Coclass::kName;

/// The ground of every component class: identity, reference count, automation and error reporting
/// for one dual interface. Objects live in the apartment that created them, so the count is plain.
///
/// @tparam CoclassType the generated description of the class (name, identifier, interface)
/// @tparam FieldsType  plain struct of the values, with their initial values, and of the bodies of
///                     the methods
template <class CoclassType, class FieldsType = NoFields>
class ComponentBase : public CoclassType::Interface, private LiveObject, public TaskMemory {
 public:
  using Coclass = CoclassType;
  using Interface = typename Coclass::Interface;
  using Fields = FieldsType;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return QueryOwnInterface(riid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      references_ = kDyingReferences;
      ReleaseQueue::Destroy(this, [](void* self) { Delete(self); });
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return CountTypeInfos(kFacts, count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    return HandOutTypeInfo(kFacts, index, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    return sab::GetIDsOfNames(InterfaceInfoOf<Interface>(), riid, names, count, locale, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    return sab::Invoke(InterfaceInfoOf<Interface>(), static_cast<Interface*>(this), member, riid,
                       locale, flags, parameters, result, exception, bad_argument);
  }

  /// The interfaces of the object itself, whatever its outer object is; adds a reference to what it
  /// hands out.
  HRESULT QueryOwnInterface(REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const HRESULT result = QueryCommonInterface(kFacts, this, riid, object);
    return result == E_NOINTERFACE ? QueryInnerInterface(riid, object) : result;
  }

  /// What the members are about, for those who made the object.
  FieldsType& OwnFields() { return fields; }

  static const ErrorOrigin& Origin() { return kFacts.origin; }

 protected:
  /// Interfaces by which only objects of this library know each other.
  virtual HRESULT QueryInnerInterface(REFIID, void**) { return E_NOINTERFACE; }

  ComponentBase() = default;
  // Out of line: four destructors of every class end with it.
  [[gnu::noinline]] virtual ~ComponentBase() = default;

  /// Ends an interface method with a failure that the caller can read about.
  static HRESULT Fail(HRESULT code, std::string_view message) noexcept {
    return ReportError(Origin(), code, message);
  }

  FieldsType fields{};  ///< what the members are about

 private:
  static void Delete(void* self) { delete static_cast<ComponentBase*>(self); }

  // "SabXmlParser.VeAppParser", there already when memory has run out.
  static constexpr auto kSource = [] {
    constexpr std::string_view kModule = "SabXmlParser.";
    constexpr std::string_view kClass = kRegisteredName<Coclass>;
    std::array<char, kModule.size() + kClass.size()> source{};
    std::copy(kClass.begin(), kClass.end(),
              std::copy(kModule.begin(), kModule.end(), source.begin()));
    return source;
  }();
  static constexpr ClassFacts kFacts = {
      {{kSource.data(), kSource.size()}, &sabxml::InterfaceId<Interface>::value},
      &InterfaceInfoOf<Interface>,
      &Coclass::clsid};

  ULONG references_ = 1;  // the creator's
};

/// A component class whose members are fields: each get/put pair of the interface reads and writes
/// the field of its name, each method calls the body of its name there; see object/members.h.
template <class Coclass, class Fields>
using Component = Edge<typename Coclass::Interface, ComponentBase<Coclass, Fields>>;

/// The server's own class behind an identity, for the names that its fields mostly have.
template <class Coclass>
using OwnClass = Component<Coclass, typename Coclass::Fields>;

/// A component object as part of an outer object: every interface answers as the outer object,
/// except the one IUnknown that the outer object holds.
template <class Class>
class Aggregated final : public Class {
 public:
  explicit Aggregated(IUnknown* outer) : outer_(outer), inner_(this) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return outer_->QueryInterface(riid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return outer_->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return outer_->Release(); }

  IUnknown* Inner() { return &inner_; }

 private:
  // The identity that the outer object owns; its count is the object's own.
  class InnerUnknown final : public IUnknown {
   public:
    explicit InnerUnknown(Aggregated* object) : object_(object) {}
    virtual ~InnerUnknown() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
      if (!object) return E_POINTER;
      if (riid == IID_IUnknown) {
        *object = this;
        AddRef();
        return S_OK;
      }
      return object_->QueryOwnInterface(riid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return object_->Class::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return object_->Class::Release(); }

   private:
    Aggregated* object_;
  };

  IUnknown* outer_;  // not counted: the outer object outlives its parts
  InnerUnknown inner_;
};

/// Creates an object of the class; see CreateWith.
template <class Class>
HRESULT CreateObject(IUnknown* outer, REFIID riid, void** object) {
  static constexpr ObjectMaker kMaker = {
      []() -> IUnknown* { return static_cast<typename Class::Interface*>(new Class()); },
      [](IUnknown* outer_object) { return (new Aggregated<Class>(outer_object))->Inner(); }};
  return CreateWith(kMaker, Class::Origin(), outer, riid, object);
}

}  // namespace sab
