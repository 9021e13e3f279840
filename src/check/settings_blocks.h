#pragma once

#include <set>
#include <span>
#include <string>
#include <vector>

#include "check/reporter.h"

namespace sab::check {

/// A block of settings: whose it is and where its keys are. Which file has it is not said.
struct SettingsChoice {
  std::string class_name;
  std::string node_path;  ///< well-formed; empty for the document
};

/// What a file that is named on its own is to be read as where blocks of settings are named: as
/// settings, unless its document element is that of a document or is meant to be.
/// @param probe the file as it is recognised
formats::Kind KindToRead(const project::File& probe, const std::vector<SettingsChoice>& choices);

/// The blocks that one settings file has.
struct SettingsBlocks {
  project::FileIndex file;
  std::vector<std::vector<xml::NodeIndex>> by_choice;  ///< their elements, in the order of choices
  std::set<xml::NodeIndex> all;
};

/// The blocks of all settings files of a project.
std::vector<SettingsBlocks> FindSettingsBlocks(const project::Project& project,
                                               const std::vector<SettingsChoice>& choices);

/// Reports document elements to which no path leads, and blocks that no file has.
/// @param choices which are all understood
/// @param are_all whether no other file can have a block; if one can, only an element that seems to
///                be meant is reported
void ReportMissingBlocks(Reporter& reporter, std::span<const SettingsBlocks> files,
                         const std::vector<SettingsChoice>& choices, bool are_all);

}  // namespace sab::check
