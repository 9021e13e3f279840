#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/settings_blocks.h"
#include "formats/documents.h"

namespace sab::check {

/// The keys of a group by the name of its class, in any letter case: a group whose keys are fixed.
const formats::SettingsGroup* SettingsGroupNamed(std::string_view class_name);
/// Whether a class keeps any key.
bool KeepsAnyKey(std::string_view class_name);
/// The name of a group that another one may be a misspelling of; empty where none is near.
std::string_view NearestSettingsGroup(std::string_view class_name);

/// Checks the blocks of all settings files. A block may be in any of them.
/// @param are_all whether no other file can have a block
void CheckSettings(Reporter& reporter, const std::vector<SettingsChoice>& blocks, bool are_all);

}  // namespace sab::check
