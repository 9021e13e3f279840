#pragma once

#include <array>
#include <memory>
#include <string>

#include "binding/element_reader.h"
#include "binding/name.h"
#include "binding/value.h"
#include "generated/coclasses.h"
#include "generated/edge.h"
#include "object/list_array.h"

namespace sab {

// How a parser binds its values to the rules of a format. A table of bindings names every element
// that its format has, and no other: anything else does not compile. The format says what a text
// is and how it becomes a value; the table says where it goes.
//
//   struct ToolBarButton
//       : Bound<formats::kToolBarButton,
//               Bind<"Identify", &IVePrsToolBarButton::put_Identify>,
//               Bind<"Command", &IVePrsToolBarButton::put_Command>> {};

namespace binding {

// What a member pointer belongs to.
template <class Member>
struct MemberOf;
template <class Class_, class Argument_>
struct MemberOf<HRESULT (STDMETHODCALLTYPE Class_::*)(Argument_)> {
  static constexpr bool kIsMethod = true;
  using Class = Class_;
  using Value = Argument_;
};
template <class Class_, class Argument_>
struct MemberOf<void (Class_::*)(Argument_)> {
  static constexpr bool kIsMethod = true;
  using Class = Class_;
  using Value = Argument_;
};
template <class Class_, class Value_>
struct MemberOf<Value_ Class_::*> {
  static constexpr bool kIsMethod = false;
  using Class = Class_;
  using Value = Value_;
};
template <auto kMember>
using Member = MemberOf<decltype(kMember)>;

template <auto kMember>
auto& In(void* owner) {
  return OwnerAs<typename Member<kMember>::Class>(owner);
}

/// The rule that a path of names leads to.
template <const auto& kFormat, auto kPath>
constexpr const formats::Rule& RuleOf() {
  constexpr const formats::Rule* kRule = formats::RuleAt(kFormat, kPath.View());
  static_assert(kRule != nullptr, "the format has no element of this name");
  return *kRule;
}

// Puts the text that is being read, as its type says.
template <Type kType, bool kIsSticky, Name kName, auto kMember>
void Put(Reading& reading, void* owner) {
  using Value = typename Member<kMember>::Value;
  auto& object = In<kMember>(owner);
  if constexpr (std::is_same_v<Value, StringList>) {
    (object.*kMember).Append(reading.text);
  } else if constexpr (!Member<kMember>::kIsMethod) {
    static_assert(Fits<kType, Value>(), "the member cannot keep what the format says");
    Store<kType>(object.*kMember, reading.text);
  } else if constexpr (std::is_same_v<Value, TextView>) {
    (object.*kMember)(reading.text);
  } else if constexpr (std::is_same_v<Value, BSTR>) {
    static_assert(IsText(kType), "the setter takes a text, and the format has none");
    CheckPut((object.*kMember)(reading.value.Set(reading.text)), kName.View());
  } else {
    static_assert(Fits<kType, Value>(), "the setter takes another type than the format has");
    const auto value = static_cast<Value>(Parsed<kType>(reading.text));
    // What a sticky flag is without the element: any text but the right one leaves it so.
    if (kIsSticky && (value != VARIANT_FALSE) == (kType == Type::kNotZero)) return;
    CheckPut((object.*kMember)(value), kName.View());
  }
}

// Puts the text of an element into the field that a setter writes.
template <Type kType, bool kIsSticky, auto kPut>
void StoreOwn(Reading& reading, void* fields, const ConfigElement& element) {
  using Fields = typename CoclassOf<typename Member<kPut>::Class>::Type::Fields;
  auto& field = static_cast<Fields*>(fields)->*FieldOf<kPut>::template kMember<Fields>;
  element.WithText(reading.text, [&field](TextView text) {
    if constexpr (kIsSticky) {
      const auto value = Parsed<kType>(text);
      if ((value != VARIANT_FALSE) != (kType == Type::kNotZero)) field = value;
    } else {
      Store<kType>(field, text);
    }
  });
}

// Whether what a binding names is an accessor of a component class of ours.
template <auto kMember>
concept HasOwnField = requires {
  typename CoclassOf<typename Member<kMember>::Class>::Type;
};

template <class Coll, class Item_>
Item_* ItemArgument(HRESULT (STDMETHODCALLTYPE Coll::*)(Item_*, LONG_PTR*));

template <class Coll>
void AddTo(Coll& list, IDispatch& object) {
  using Item = std::remove_pointer_t<decltype(ItemArgument(&Coll::AddTail))>;
  Check(list.AddTail(static_cast<Item*>(&object), nullptr),
        "an element could not be added to its list");
}

// Appends to the list that the owner has, or hands out.
template <auto kList>
void AppendTo(void* owner, IDispatch& object) {
  auto& holder = In<kList>(owner);
  if constexpr (Member<kList>::kIsMethod) {
    ComPtr<std::remove_pointer_t<std::remove_pointer_t<typename Member<kList>::Value>>> list;
    Check((holder.*kList)(list.Put()), "a list could not be had");
    if (!list) throw ComError(E_POINTER, "a list could not be created");
    AddTo(*list, object);
  } else {
    AddTo(*(holder.*kList), object);
  }
}

// The same for the list in the field that a getter reads.
template <auto kGet>
void AppendToOwn(void* fields, IDispatch& object) {
  using Fields = typename CoclassOf<typename Member<kGet>::Class>::Type::Fields;
  AddTo(*(static_cast<Fields*>(fields)->*FieldOf<kGet>::template kMember<Fields>), object);
}

// The rules in an element of a format, bound; in the order of the format.
template <const auto& kFormat, auto kPath, class... Bindings>
struct Table {
  static constexpr std::span<const formats::Rule> Format() {
    if constexpr (kPath.View().empty()) {
      return kFormat;
    } else {
      return RuleOf<kFormat, kPath>().Content();
    }
  }
  static constexpr std::size_t IndexOf(std::string_view name) {
    std::size_t index = 0;
    while (index < Format().size() && Format()[index].name != name) ++index;
    return index;
  }
  static_assert(((IndexOf(Bindings::kName.View()) < Format().size()) && ...),
                "a binding names an element that the format does not have");
  static_assert(sizeof...(Bindings) == Format().size(),
                "the format has an element that is unbound");

  using Rules = std::array<BoundRule, sizeof...(Bindings)>;
  static constexpr Rules MakeRules() {
    Rules rules;
    ((rules[IndexOf(Bindings::kName.View())] = Bindings::template Rule<kFormat, kPath>()), ...);
    return rules;
  }

  // Not constexpr where they are declared, since an element may hold its own kind.
  static const Rules kRules;
  static const BoundContent kContent;
};
template <const auto& kFormat, auto kPath, class... Bindings>
constinit const typename Table<kFormat, kPath, Bindings...>::Rules
    Table<kFormat, kPath, Bindings...>::kRules = MakeRules();
template <const auto& kFormat, auto kPath, class... Bindings>
constinit const BoundContent Table<kFormat, kPath, Bindings...>::kContent = {kRules};

template <class Content>
concept IsTable = requires {
  Content::kContent;
};

// The content of an element: a table of its own, or one that is written where it is used.
template <const auto& kFormat, auto kPath, class... Inner>
struct ContentOf {
  using Type = Table<kFormat, kPath, Inner...>;
};
template <const auto& kFormat, auto kPath, IsTable Content>
struct ContentOf<kFormat, kPath, Content> {
  using Type = Content;
  static_assert(Content::Format().data() == RuleOf<kFormat, kPath>().content);
};

template <const auto& kFormat, auto kPath, class... Inner>
constexpr const BoundContent* ContentPointer() {
  if constexpr (sizeof...(Inner) == 0) {
    static_assert(RuleOf<kFormat, kPath>().content == nullptr, "the content is unbound");
    return nullptr;
  } else {
    return &ContentOf<kFormat, kPath, Inner...>::Type::kContent;
  }
}

}  // namespace binding

/// A table of bindings for a content that has a name.
template <const auto& kFormat, class... Bindings>
struct Bound : binding::Table<kFormat, kNoPath, Bindings...> {};

/// The name of an element that code asks for, which its format must have.
template <const auto& kFormat, Name kName>
inline constexpr std::string_view kElement = binding::RuleOf<kFormat, kName>().name;

/// A text: kept in a member, put by a setter, or appended to a StringList.
template <Name kName_, auto kMember>
struct Bind {
  static constexpr auto kName = kName_;

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    constexpr const formats::Rule& kRule = binding::RuleOf<kFormat, Join(kPath, kName)>();
    static_assert(
        kRule.IsList() == std::is_same_v<typename binding::Member<kMember>::Value, StringList>,
        "a list is kept in a StringList, and nothing else is");
    BoundRule rule;
    rule.name = kRule.name;
    rule.is_list = kRule.IsList();
    rule.completes_item = kRule.IsForItem();
    rule.must_be_guid = kRule.need == formats::Need::kCompletesItemIfGuid;
    rule.taking = kRule.each_node_counts                ? Taking::kEachNode
                  : kRule.IsList() && kRule.IsForItem() ? Taking::kUnlessEmpty
                                                        : Taking::kWhole;
    constexpr bool kIsSticky = kRule.count == formats::Count::kSticky;
    rule.put = &binding::Put<kRule.type, kIsSticky, kName, kMember>;
    if constexpr (binding::HasOwnField<kMember>) {
      rule.store = &binding::StoreOwn<kRule.type, kIsSticky, kMember>;
    }
    return rule;
  }
};

/// An element whose content is bound to the same owner.
template <Name kName_, class... Inner>
struct Within {
  static constexpr auto kName = kName_;

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    constexpr auto kPlace = Join(kPath, kName);
    BoundRule rule;
    rule.name = binding::RuleOf<kFormat, kPlace>().name;
    rule.is_list = binding::RuleOf<kFormat, kPlace>().IsList();
    rule.content = binding::ContentPointer<kFormat, kPlace, Inner...>();
    return rule;
  }
};

/// An element whose content is bound to an object that the owner hands out.
template <Name kName_, auto kGet, class... Inner>
struct Into {
  static constexpr auto kName = kName_;

  static ComPtr<IDispatch> Open(Reading&, void* owner, const ConfigElement&) {
    std::remove_pointer_t<typename binding::Member<kGet>::Value> object = nullptr;
    binding::CheckPut((binding::In<kGet>(owner).*kGet)(&object), kName.View());
    if (!object)
      throw ComError(E_POINTER, "the object of " + std::string(kName.View()) + " is missing");
    ComPtr<IDispatch> opened;
    opened.Attach(object);
    return opened;
  }

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    BoundRule rule = Within<kName, Inner...>::template Rule<kFormat, kPath>();
    rule.open = &Open;
    return rule;
  }
};

/// An element that becomes an object of a list.
///
/// @tparam Maker has static ComPtr<IDispatch> Make(Reading&, void* owner, const ConfigElement&)
/// @tparam kList the owner's list, or its getter
template <Name kName_, class Maker, auto kList, class... Inner>
struct Each {
  static constexpr auto kName = kName_;

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    BoundRule rule = Within<kName, Inner...>::template Rule<kFormat, kPath>();
    constexpr auto kPlace = Join(kPath, kName);
    const std::span<const formats::Rule> parts = binding::RuleOf<kFormat, kPlace>().Content();
    rule.is_item = std::ranges::any_of(parts, &formats::Rule::IsForItem);
    rule.open = &Maker::Make;
    rule.append = &binding::AppendTo<kList>;
    if constexpr (binding::HasOwnField<kList>) rule.append_own = &binding::AppendToOwn<kList>;
    return rule;
  }
};

/// An element that its owner reads itself.
///
/// @tparam kRead void (Class::*)(const ConfigElement&)
template <Name kName_, auto kRead>
struct Call {
  static constexpr auto kName = kName_;

  template <const auto& kFormat, auto kPath>
  static constexpr BoundRule Rule() {
    BoundRule rule;
    rule.name = kElement<kFormat, Join(kPath, kName)>;
    rule.is_list = true;
    rule.open = [](Reading&, void* owner, const ConfigElement& element) {
      (binding::In<kRead>(owner).*kRead)(element);
      return ComPtr<IDispatch>();
    };
    return rule;
  }
};

}  // namespace sab
