#pragma once

#include <string>

#include "settings/settings_table.h"

namespace sab {

/// The reference of all settings groups, printed from their key tables: Markdown, UTF-8. It is kept
/// as docs/settings.md.
std::string SettingsManual();

/// A type as the reference names it: "unsigned short".
std::string WordsForSetting(Type type);

/// What is special about a key: "only loaded"; mostly empty.
std::string NoteOf(const SettingsRow& row);

}  // namespace sab
