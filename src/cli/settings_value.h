#pragma once

#include <string>

#include "settings/settings_table.h"
#include "tree_sink.h"

namespace sabxml::cli {

// Values of settings between the texts of a file and people. A file holds what a host saves: -1 for
// a flag, 32 bits without a sign as if there were one, a semicolon behind each element of a list.

/// For people: flags as true and false, numbers without a sign as such, the rest as in the file.
std::string ShownSetting(sab::SettingType type, sab::TextView file_text);

/// As JSON has it: numbers, truth values, arrays.
Json SettingAsJson(sab::SettingType type, sab::TextView file_text);

/// The text for a file. Raises Failure, saying what is wanted, for a text that is not of the key's
/// type, that does not fit into its width, or that would be another after a load.
/// @param utf8 as a person writes it: as ShownSetting or as in the file; unsigned numbers also 0x…
sab::Text CheckedSetting(const sab::SettingsRow& row, const std::string& utf8);

/// The same for a group that takes any key.
sab::Text CheckedText(const std::string& key, const std::string& utf8);

}  // namespace sabxml::cli
