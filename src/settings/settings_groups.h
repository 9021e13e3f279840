#pragma once

#include <memory>
#include <span>

#include "formats/documents.h"
#include "settings/settings_table.h"

namespace sab {

/// The values of one settings group, whatever their struct is.
using SettingsFields = std::unique_ptr<void, void (*)(void*)>;

/// A settings group as those see it who describe or edit settings.
struct SettingsGroup {
  std::string_view class_name;  ///< of the parser, ASCII: "VeDisplayCfgParser"
  std::string_view about;       ///< what the group is about, English
  std::span<const SettingsRow> (*rows)();
  SettingsFields (*make_fields)();  ///< values as a new parser has them
};

/// The groups whose keys are fixed.
std::span<const SettingsGroup> SettingsGroups();
using formats::NamedValueClasses;

}  // namespace sab
