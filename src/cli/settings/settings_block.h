#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/settings/settings_file.h"
#include "cli/tree_sink.h"
#include "settings/settings_groups.h"

namespace sabxml::cli {

/// A settings group as it is chosen on the command line.
struct SettingsChoice {
  std::string class_name;
  const sab::SettingsGroup* table = nullptr;  ///< null for a group that keeps any key
};

/// By the name of its class, in any letter case. Raises Failure for one that is none of them.
SettingsChoice SettingsChoiceNamed(const std::string& class_name);
std::vector<SettingsChoice> SettingsChoices();

/// Where the colon is of a word CLASS:NODEPATH among keys, which begins another block; npos for any
/// other word.
std::size_t BlockColonIn(std::string_view word);

/// The row of a key; a host's name of the value and other letter case will do, too. Raises Failure.
const sab::SettingsRow& RowNamed(const sab::SettingsGroup& group, const std::string& key);

/// One key of a group in a file.
struct SettingsEntry {
  std::string key;
  const sab::SettingsRow* row = nullptr;  ///< null in a group that keeps any key
  /// The elements of this name under all nodes of the path, in the order of the file: a load takes
  /// the first.
  std::vector<sab::ConfigElement> copies;
  bool is_structure = false;
  /// What a load gives a host, written as in a file; the group's default where there is no copy or
  /// a load takes none. Empty for structures.
  sab::Text value;

  /// False for a structure that the file does not have: what a load makes of it is not known here.
  bool HasValue() const { return !is_structure || !copies.empty(); }
  std::string Shown() const;
  Json AsJson() const;
  /// One copy as it is in the file, for people.
  std::string ShownCopy(std::size_t index) const;
  sab::Type Type() const;
};

/// The elements of one group in a file.
class SettingsBlock {
 public:
  /// @param may_be_created whether elements of the path that are missing are made by Set
  /// Raises Failure for a path that leads to no element, unless it may be created.
  SettingsBlock(SettingsChoice group, std::shared_ptr<SettingsFile> file, std::string node_path,
                bool may_be_created = false);

  const SettingsChoice& Group() const { return group_; }
  const std::string& FileName() const { return file_->Name(); }
  const std::string& NodePath() const { return node_path_; }

  /// A key of the group; where it keeps any, one that may be missing. Raises Failure.
  SettingsEntry EntryNamed(const std::string& key);
  /// All keys of the group; where it keeps any, those that are there, in the order of the file.
  std::vector<SettingsEntry> Entries();
  /// What a load gives a host for a text of the file, written as in a file.
  sab::Text LoadedText(const sab::SettingsRow& row, sab::TextView text);

  /// Leaves one copy of a key, which holds the text: the first, or a new one.
  void Set(SettingsEntry& entry, sab::TextView text);
  /// Leaves one copy of a key.
  static void KeepOnly(SettingsEntry& entry, std::size_t index);
  static void RemoveAll(SettingsEntry& entry);

  /// The copy that was saved last: a save appends to the first node of the path.
  std::size_t NewestCopy(const SettingsEntry& entry);

 private:
  SettingsEntry EntryOf(const sab::SettingsRow& row);

  SettingsChoice group_;
  std::shared_ptr<SettingsFile> file_;
  std::string node_path_;
  sab::SettingsFields values_{nullptr, [](void*) {}};
};

}  // namespace sabxml::cli
