#pragma once

#include <string>
#include <vector>

#include "cli/settings/settings_block.h"

namespace sabxml::cli {

/// The arguments of the commands about settings.
struct SettingsOptions {
  std::string class_name;
  std::string file;
  std::string node_path;
  std::vector<std::string> names;  ///< classes, keys, or KEY=VALUE
  bool as_json = false;
  bool keeps_backup = false;
  bool is_dry = false;
  bool keeps_newest = false;

  // The other side of a comparison.
  std::string other_file;
  std::string other_path;  ///< empty for the same path
  bool tells_by_exit_code = false;
};

// Reading. Each prints to the standard output and raises Failure.
void ListSettings(const SettingsOptions& options);
void GetSettings(const SettingsOptions& options);
void DumpSettings(const SettingsOptions& options);
void CompareSettings(const SettingsOptions& options);

// Writing. Each checks everything before the file is touched.
void SetSettings(const SettingsOptions& options);
void UnsetSettings(const SettingsOptions& options);
void CompactSettings(const SettingsOptions& options);

/// Lines of cells that are printed as columns.
class Columns {
 public:
  void Add(std::vector<std::string> cells) { lines_.push_back(std::move(cells)); }
  bool IsEmpty() const { return lines_.empty(); }
  void Print(std::ostream& out, std::string_view indentation = {}) const;

 private:
  std::vector<std::vector<std::string>> lines_;
};

}  // namespace sabxml::cli
