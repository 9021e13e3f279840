#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/reporter.h"
#include "formats/documents.h"

namespace sab::check {

/// A block of settings: whose it is and where its keys are.
struct SettingsChoice {
  std::string class_name;
  std::string node_path;
};

/// The keys of a group by the name of its class, in any letter case: a group whose keys are fixed.
const formats::SettingsGroup* SettingsGroupNamed(std::string_view class_name);
/// Whether a class keeps any key.
bool KeepsAnyKey(std::string_view class_name);
/// The name of a group that another one may be a misspelling of; empty where none is near.
std::string_view NearestSettingsGroup(std::string_view class_name);

/// Checks blocks of a settings file.
/// @param file of the kind of settings, with elements
/// @return a message for each block whose path is not understood
std::vector<std::string> CheckSettings(Reporter& reporter, project::FileIndex file,
                                       const std::vector<SettingsChoice>& blocks);

}  // namespace sab::check
