#pragma once

#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/bstr.h"
#include "base/com_error.h"
#include "base/com_ptr.h"
#include "base/reused_string.h"
#include "common/config_document.h"

namespace sab {

/// What a reader of elements needs at hand during one Generate or Load call.
struct Reading {
  Text text;           ///< of the element that is being read
  ReusedString value;  ///< the same for a setter
  Bstr carried;        ///< what entries take over from the element around them
  /// The fields of the object that was opened last, if it is of this library's own class.
  void* own_fields = nullptr;
};

struct BoundContent;

/// How the text of an element becomes a value.
enum class Taking : unsigned char {
  kWhole,        ///< as it is
  kUnlessEmpty,  ///< an empty one is skipped
  kEachNode,     ///< every node in the element is a text of its own; empty ones are none
};

/// A rule with the target of its element. The owner is the object that the rules around it are
/// bound to: an interface, or the class or struct that has the members; see OwnerAs.
struct BoundRule {
  std::string_view name;
  bool is_list = false;  ///< an element of the same name mostly follows
  bool is_item = false;  ///< its object is made after it has been read, and only if it is complete
  bool completes_item = false;
  bool must_be_guid = false;  ///< another text does not count
  Taking taking = Taking::kWhole;
  /// Puts the text that is being read; null for an element that is opened.
  void (*put)(Reading& reading, void* owner) = nullptr;
  /// The same straight into the fields of an owner of this library's own class; null where there is
  /// no such way.
  void (*store)(Reading& reading, void* fields, const ConfigElement& element) = nullptr;
  /// The object that the content is bound to, and its own fields if it has such; without it, or
  /// where it gives null, the owner.
  ComPtr<IDispatch> (*open)(Reading& reading, void* owner, const ConfigElement& element) = nullptr;
  const BoundContent* content = nullptr;  ///< null where nothing is read
  /// Adds the object to a list of the owner when it has been read; may be null.
  void (*append)(void* owner, IDispatch& object) = nullptr;
  void (*append_own)(void* fields, IDispatch& object) = nullptr;  ///< as store is to put
};

/// What an element may hold, by local name; all else is passed over.
struct BoundContent {
  std::span<const BoundRule> rules;
};

/// An owner as a pointer of no type, and back: a component by its IDispatch.
template <class Class>
void* OwnerPointer(Class& object) {
  if constexpr (std::is_convertible_v<Class*, IDispatch*>) {
    return static_cast<IDispatch*>(&object);
  } else {
    return &object;
  }
}
template <class Class>
Class& OwnerAs(void* owner) {
  if constexpr (std::is_convertible_v<Class*, IDispatch*>) {
    return static_cast<Class&>(*static_cast<IDispatch*>(owner));
  } else {
    return *static_cast<Class*>(owner);
  }
}

namespace binding {
/// Raises ComError for a setter or getter that fails, with its code and the name of the element.
void CheckPut(HRESULT result, std::string_view element);
}  // namespace binding

/// Reads an element and everything inside it into its owner, to any depth, in document order.
/// Raises ComError for a setter, a creation or a list that fails; what was appended before stays.
void ReadElements(Reading& reading, const ConfigElement& element, const BoundContent& content,
                  void* owner);

}  // namespace sab
