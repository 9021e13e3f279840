#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/tree_sink.h"
#include "settings/settings_table.h"

namespace sabxml::cli {

// Values of settings between the texts of a file and people. A file holds what a host saves: -1 for
// a flag, 32 bits without a sign as if there were one, a semicolon after each element of a list.

/// A value as a load gives it to a host, where a save writes another: the low 16 bits of a wide
/// short, and all decimals of a number.
/// @param saved what a save writes
/// @param loaded the text that was loaded
sab::Text LoadedSetting(sab::Type type, sab::TextView saved, sab::TextView loaded);

/// Whether two decimal numbers are the same in every digit: 1e3 and 1000.0, but not 0.1234567 and
/// 0.123457.
bool IsSameDecimal(std::string_view a, std::string_view b);

/// For people: flags as true and false, numbers without a sign as such, the rest as in the file.
std::string ShownSetting(sab::Type type, sab::TextView file_text);

/// As JSON has it: numbers, truth values, arrays.
Json SettingAsJson(sab::Type type, sab::TextView file_text);

/// The numbers that a key takes, "-32768 to 32767", or the words of a flag; empty where any text
/// will do.
std::string RangeOfSetting(const sab::SettingsRow& row);
/// The least and the greatest whole number that a key takes; nothing for other types.
std::optional<sab::formats::NumberRange> NumbersOfSetting(const sab::SettingsRow& row);

/// The text for a file. Raises Failure, saying what is wanted, for a text that is not of the key's
/// type, that does not fit into its width, or that would be another after a load.
/// @param utf8 as a person writes it: as ShownSetting or as in the file; unsigned numbers also 0x…
sab::Text CheckedSetting(const sab::SettingsRow& row, const std::string& utf8);

/// The same for a group that takes any key.
sab::Text CheckedText(const std::string& key, const std::string& utf8);

}  // namespace sabxml::cli
