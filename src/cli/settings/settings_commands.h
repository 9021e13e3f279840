#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/settings/settings_block.h"
#include "cli/table.h"

namespace sabxml::cli {

/// The arguments of the commands about settings.
struct SettingsOptions {
  std::string class_name;
  std::string file;
  std::string node_path;
  /// Classes, keys, or KEY=VALUE; CLASS:NODEPATH begins those of another block of the file.
  std::vector<std::string> names;
  bool as_json = false;
  bool keeps_backup = false;
  bool is_dry = false;
  bool keeps_newest = false;
  bool may_create = false;
  bool only_tells_whether_set = false;
  bool has_default = false;
  std::string default_value;
  std::string dump;      ///< file with JSON to load; the standard input where it is "-"
  unsigned changes = 0;  ///< after which a watch ends; 0 for none

  // The other side of a comparison.
  std::string other_file;
  std::string other_path;  ///< empty for the same path
  bool tells_by_exit_code = false;
};

/// A block as the command line names it, with the keys that are named for it.
struct NamedBlock {
  SettingsChoice group;
  std::string node_path;
  std::vector<std::string> names;

  std::string Title() const { return group.class_name + ":" + node_path; }
};

/// The blocks of a command, at least one. Raises Failure for an unknown class.
std::vector<NamedBlock> BlocksOf(const SettingsOptions& options);

// Reading. Each prints to the standard output and raises Failure.
void ListSettings(const SettingsOptions& options);
void DescribeRanges(const SettingsOptions& options);
void GetSettings(const SettingsOptions& options);
void DumpSettings(const SettingsOptions& options);
void CompareSettings(const SettingsOptions& options);
void WatchSettings(const SettingsOptions& options);

// Writing. Each checks everything before the file is touched.
void SetSettings(const SettingsOptions& options);
void UnsetSettings(const SettingsOptions& options);
void CompactSettings(const SettingsOptions& options);
void LoadSettingsDump(const SettingsOptions& options);
void EditSettings(const SettingsOptions& options);

}  // namespace sabxml::cli
