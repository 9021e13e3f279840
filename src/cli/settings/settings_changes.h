#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/settings/settings_commands.h"

namespace sabxml::cli {

/// Changes of one settings file: all are checked when they are added, and made as one.
class SettingsChanges {
 public:
  /// Opens the file that the options name, to change it unless this is a dry run. Raises Failure.
  /// @param purpose to read where no change will be added
  explicit SettingsChanges(const SettingsOptions& options,
                           SettingsPurpose purpose = SettingsPurpose::kChange);

  /// Refuses the standard input, which cannot be changed. Raises CLI::ValidationError.
  static void RequireFile(const SettingsOptions& options);

  /// A block of the file, which lives as long as the changes. Raises Failure.
  SettingsBlock& Block(const SettingsChoice& group, const std::string& node_path);

  /// Adds a change of a value that a person gives. Raises Failure for one that does not fit, with
  /// its place, and for a key that is named twice.
  void Set(SettingsBlock& block, const std::string& key, const std::string& value);
  /// The same with the text of the file, which is not checked.
  void SetText(SettingsBlock& block, SettingsEntry entry, sab::Text text,
               const std::string& given = {});
  /// Adds the removal of all copies of a key.
  void Unset(SettingsBlock& block, const std::string& key);
  /// Adds the removal of all copies of a key but one.
  void KeepOnly(SettingsBlock& block, SettingsEntry entry, std::size_t kept);

  bool IsEmpty() const { return changes_.empty(); }

  /// Makes the changes, saves the file, and only then says what was done: columns, or JSON where
  /// the options want it. Raises Failure.
  void Finish();

 private:
  struct Change {
    SettingsBlock* block;
    SettingsEntry entry;
    std::optional<sab::Text> text;  // nothing for a removal
    std::string given;
    std::optional<std::size_t> kept;  // of the copies, where all others are removed

    bool IsMade() const;
    void Make();
    Json AsJson() const;
    std::vector<std::string> AsCells() const;
  };

  void Add(Change change);
  void Report(bool is_changed) const;
  void WarnOfLosses() const;

  const SettingsOptions& options_;
  std::shared_ptr<SettingsFile> file_;
  std::map<std::string, std::unique_ptr<SettingsBlock>> blocks_;  // by class and path
  std::vector<Change> changes_;
};

}  // namespace sabxml::cli
