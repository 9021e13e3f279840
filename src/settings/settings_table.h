#pragma once

#include <span>
#include <string_view>

#include "common/config_document.h"
#include "settings/settings_values.h"

namespace sab {

// A settings group is a table that reads like its manual page: one row a key, in the order of the
// file. The two functions at the end load and save any group.
//
//   constexpr SettingsRow kRows[] = {
//       Setting<&Fields::ObscuredColor>("ObscuredColor"),
//       Flag<&Fields::DragMode>("DragMode"),
//       Setting<&Fields::UCSDisplayCtrl>("UCSDispCtrl").Of("UCSDisplayCtrl"),
//   };

enum class SettingUse : unsigned char { kLoadedAndSaved, kOnlyLoaded, kOnlySaved };

/// One key of a settings group. Rows are made by the functions below.
struct SettingsRow {
  std::string_view key;       ///< name of the element, ASCII
  std::string_view property;  ///< of the interface, or what its methods are about; ASCII
  SettingType type;
  SettingUse use = SettingUse::kLoadedAndSaved;
  /// Taken as the text where the file lacks the key; without it the value then stays.
  std::string_view text_when_missing = {};

  // What the key does with its value in the group's fields. A plain value goes through a text; a
  // structure reads an element's children, and fills a new element with children.
  void (*parse)(void* fields, TextView text) = nullptr;
  Text (*format)(const void* fields) = nullptr;
  void (*read)(void* fields, const ConfigElement& element, Text& scratch) = nullptr;
  void (*write)(const void* fields, AppendedElement element) = nullptr;

  /// The row with the property's name, where that is not the key.
  constexpr SettingsRow Of(std::string_view name) const {
    SettingsRow row = *this;
    row.property = name;
    return row;
  }
  constexpr SettingsRow OnlySaved() const { return With(SettingUse::kOnlySaved); }
  constexpr SettingsRow OnlyLoaded() const { return With(SettingUse::kOnlyLoaded); }
  constexpr SettingsRow WhenMissing(std::string_view text) const {
    SettingsRow row = *this;
    row.text_when_missing = text;
    return row;
  }

  constexpr bool IsLoaded() const { return use != SettingUse::kOnlySaved; }
  constexpr bool IsSaved() const { return use != SettingUse::kOnlyLoaded; }

 private:
  constexpr SettingsRow With(SettingUse new_use) const {
    SettingsRow row = *this;
    row.use = new_use;
    return row;
  }
};

namespace internal {

template <class Member>
struct MemberOf;
template <class FieldsType, class ValueType>
struct MemberOf<ValueType FieldsType::*> {
  using Fields = FieldsType;
  using Value = ValueType;
};

template <auto member>
auto& FieldIn(void* fields) {
  return static_cast<typename MemberOf<decltype(member)>::Fields*>(fields)->*member;
}
template <auto member>
const auto& FieldIn(const void* fields) {
  return static_cast<const typename MemberOf<decltype(member)>::Fields*>(fields)->*member;
}

template <auto member>
Text FormatMember(const void* fields) {
  return FormatSetting(FieldIn<member>(fields));
}

}  // namespace internal

/// A value that is read and written by the rules of its type.
template <auto member>
constexpr SettingsRow Setting(std::string_view key) {
  SettingsRow row{key, key, kSettingTypeOf<typename internal::MemberOf<decltype(member)>::Value>};
  row.parse = [](void* fields, TextView text) {
    ParseSetting(internal::FieldIn<member>(fields), text);
  };
  row.format = &internal::FormatMember<member>;
  return row;
}

/// A truth value that keeps whatever number the file says: "1" loads as 1 and is saved as 1.
template <auto member>
constexpr SettingsRow Flag(std::string_view key) {
  SettingsRow row = Setting<member>(key);
  row.type = SettingType::kFlag;
  return row;
}

/// A truth value that is true exactly for -1.
template <auto member>
constexpr SettingsRow StrictFlag(std::string_view key) {
  SettingsRow row = Setting<member>(key);
  row.type = SettingType::kStrictFlag;
  row.parse = [](void* fields, TextView text) {
    internal::FieldIn<member>(fields) = ParseBool(text);
  };
  return row;
}

/// A truth value that is true for every number but 0.
template <auto member>
constexpr SettingsRow FlagUnlessZero(std::string_view key) {
  SettingsRow row = Flag<member>(key);
  row.parse = [](void* fields, TextView text) {
    internal::FieldIn<member>(fields) = ParseInt(text) != 0 ? VARIANT_TRUE : VARIANT_FALSE;
  };
  return row;
}

/// A number whose greatest value the file may call "INT_MAX".
template <auto member>
constexpr SettingsRow IntOrMax(std::string_view key) {
  SettingsRow row = Setting<member>(key);
  row.type = SettingType::kIntOrMax;
  row.parse = [](void* fields, TextView text) {
    internal::FieldIn<member>(fields) = ParseIntOrMax(text);
  };
  return row;
}

/// An element with elements of its own; the member's class has
///   void Read(const ConfigElement& element, Text& scratch);
///   void Write(AppendedElement element) const;
template <auto member>
constexpr SettingsRow Structure(std::string_view key) {
  SettingsRow row{key, key, SettingType::kStructure};
  row.read = [](void* fields, const ConfigElement& element, Text& scratch) {
    internal::FieldIn<member>(fields).Read(element, scratch);
  };
  row.write = [](const void* fields, AppendedElement element) {
    internal::FieldIn<member>(fields).Write(element);
  };
  return row;
}

/// Reads the keys that stand under a node path of a loaded document, or of none. A key that is
/// missing leaves its value. Raises ComError(E_FAIL) for a path that is not well-formed.
void LoadSettings(std::span<const SettingsRow> rows, void* fields, ConfigDocument& document,
                  TextView node_path);

/// Adds every key behind the last child of an element. Keys that stand there already stay, and are
/// the ones that a later load reads.
void AppendSettings(std::span<const SettingsRow> rows, const void* fields, ConfigElement element);

}  // namespace sab
