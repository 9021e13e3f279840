#pragma once

#include "binding/bind_document.h"
#include "object/component.h"
#include "server/component_creator.h"

namespace sab {

// How the objects are made that a file describes. A host may have put a class of its own in the
// place of ours, so they are known by their interfaces alone.

/// Sets a flag of a new object.
template <auto kPut>
struct Raised {
  static void Apply(Reading&, auto& object, const ConfigElement&) {
    binding::CheckPut((object.*kPut)(VARIANT_TRUE), "the flag of an element");
  }
};

/// Puts the text that the element around it carries.
template <auto kPut>
struct Carried {
  static void Apply(Reading& reading, auto& object, const ConfigElement&) {
    binding::CheckPut((object.*kPut)(reading.carried.Get()), "the name of a command");
  }
};

/// Puts the whole text of the element.
template <auto kPut>
struct OwnText {
  static void Apply(Reading& reading, auto& object, const ConfigElement& element) {
    element.ReadText(reading.text);
    binding::CheckPut((object.*kPut)(reading.value.Set(reading.text)), "the text of an element");
  }
};

/// Makes an object of a class and takes some steps with it, in this order.
template <class Coclass, class... Steps>
struct New {
  static ComPtr<IDispatch> Make(Reading& reading, void*, const ConfigElement& element) {
    ComponentCreator& creator = *ComponentCreator::Current();
    ComPtr<typename Coclass::Interface> made;
    void* own_fields = nullptr;
    if (creator.IsOwn<Coclass>()) {
      auto* const own = new OwnClass<Coclass>;
      own_fields = &own->OwnFields();
      made.Attach(own);
    } else {
      made = creator.Create<Coclass>();
    }
    (Steps::Apply(reading, *made, element), ...);
    ComPtr<IDispatch> object;
    object.Attach(made.Detach());
    reading.own_fields = own_fields;
    return object;
  }
};

/// A text that the entries around it take over.
template <Name kName_>
struct Carry {
  static constexpr auto kName = kName_;

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    BoundRule rule;
    rule.name = binding::RuleOf<kFormat, Join(kPath, kName)>().name;
    rule.put = [](Reading& reading, void*) { reading.carried.Assign(reading.text); };
    return rule;
  }
};

/// An element with such a text: nothing is taken over from the one before.
template <Name kName_, class... Inner>
struct Carrying {
  static constexpr auto kName = kName_;

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    BoundRule rule = Within<kName, Inner...>::template Rule<kFormat, kPath>();
    rule.open = [](Reading& reading, void*, const ConfigElement&) {
      reading.carried = Bstr();
      return ComPtr<IDispatch>();
    };
    return rule;
  }
};

/// Reads the file that ConfigurationPath names. Raises ComError.
///
/// @tparam Elements the descriptor's BoundPaths
template <class Elements>
void ReadDescriptor(auto& fields) {
  ComponentCreator creator;
  const ComponentCreator::Scope scope(creator);
  ReadDocument(Elements::kDocument, fields.ConfigurationPath.View(), &fields);
}

}  // namespace sab
