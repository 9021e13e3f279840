#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "binding/bind.h"
#include "common/config_document.h"

namespace sab {

// A settings group binds the keys of its format to the members that keep their values. The two
// functions at the end load and save any group.

/// One key of a settings group.
struct SettingsRow {
  std::string_view key;       ///< name of the element, ASCII
  std::string_view property;  ///< of the interface, or what its methods are about; ASCII
  Type type = Type::kNone;    ///< without what it means; kNone for a structure
  const formats::Rule* rule = nullptr;

  // What the key does with its value in the group's fields. A plain value goes through a text; a
  // structure reads an element's children, and fills a new element with children.
  void (*parse)(void* fields, TextView text) = nullptr;
  Text (*format)(const void* fields) = nullptr;
  void (*read)(void* fields, const ConfigElement& element, Text& scratch) = nullptr;
  void (*write)(const void* fields, AppendedElement element) = nullptr;

  constexpr bool IsLoaded() const { return rule->use != formats::Use::kOnlySaved; }
  constexpr bool IsSaved() const { return rule->use != formats::Use::kOnlyLoaded; }
};

namespace binding {

template <auto kMember>
const auto& ValueIn(const void* fields) {
  return static_cast<const typename Member<kMember>::Class*>(fields)->*kMember;
}

// A structure's class has
//   void Read(const ConfigElement& element, Text& scratch);
//   void Write(AppendedElement element) const;
template <const auto& kFormat, Name kName, auto kMember>
constexpr SettingsRow SettingsRowOf(const Bind<kName, kMember>&) {
  constexpr const formats::Rule& kRule = RuleOf<kFormat, kName>();
  SettingsRow row{kRule.name, kRule.member.empty() ? kRule.name : kRule.member, Basic(kRule.type),
                  &kRule};
  if constexpr (kRule.type == Type::kNone) {
    row.read = [](void* fields, const ConfigElement& element, Text& scratch) {
      (In<kMember>(fields).*kMember).Read(element, scratch);
    };
    row.write = [](const void* fields, AppendedElement element) {
      ValueIn<kMember>(fields).Write(element);
    };
  } else {
    static_assert(Fits<kRule.type, typename Member<kMember>::Value>());
    row.parse = [](void* fields, TextView text) {
      Store<kRule.type>(In<kMember>(fields).*kMember, text);
    };
    row.format = [](const void* fields) { return Format(ValueIn<kMember>(fields)); };
  }
  return row;
}

}  // namespace binding

/// The rows of a group, in the order of its format. Every key is bound, and no other.
template <const auto& kFormat, class... Bindings>
constexpr auto BindSettings() {
  static_assert(sizeof...(Bindings) == std::size(kFormat), "the format has a key that is unbound");
  std::array<SettingsRow, sizeof...(Bindings)> rows = {
      binding::SettingsRowOf<kFormat>(Bindings())...};
  std::ranges::sort(rows, {}, &SettingsRow::rule);
  return rows;
}

/// Reads the keys under a node path of a loaded document, or of none. A key that is
/// missing leaves its value. Raises ComError(E_FAIL) for a path that is not well-formed.
void LoadSettings(std::span<const SettingsRow> rows, void* fields, ConfigDocument& document,
                  TextView node_path);

/// Adds every key after the last child of an element. Existing keys stay, and are
/// the ones that a later load reads.
void AppendSettings(std::span<const SettingsRow> rows, const void* fields, ConfigElement element);

}  // namespace sab
