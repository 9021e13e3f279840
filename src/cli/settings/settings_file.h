#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/config_document.h"

namespace sabxml::cli {

enum class SettingsPurpose {
  kRead,
  kChange,  ///< no other writer may change the file as long as it is open
};

/// A settings file in memory, which the blocks of one command share. File names are as on the
/// command line.
class SettingsFile {
 public:
  /// Raises Failure for a file that cannot be read. One that is missing is no failure where it may
  /// be created; nothing is written before Save.
  SettingsFile(std::string name, SettingsPurpose purpose, bool may_be_created = false);

  const std::string& Name() const { return name_; }
  sab::ConfigDocument& Document() { return document_; }

  /// All elements that a path leads to. Raises Failure for a path that is malformed.
  std::vector<sab::ConfigElement> Select(const std::string& path);
  bool Has(const std::string& node_path) { return !Select(node_path).empty(); }
  /// Raises Failure for a path that leads to no element, with what may be meant.
  void Require(const std::string& node_path);

  /// Makes the elements of a path of names that are missing, for the next Save. Raises Failure for
  /// another path, and for one from another document element.
  /// @return the last of them, the same one each time; nothing where the path leads to an element
  std::optional<sab::AppendedElement> Make(const std::string& node_path);

  /// Writes the file as one step, and before it, where that is wanted, the old one as FILE.bak.
  /// Raises Failure; the file is whole in any case.
  void Save(bool keeps_backup);

 private:
  void WriteBackup() const;

  std::string name_;
  sab::ConfigDocument document_;
  bool is_new_ = false;
  std::map<std::string, sab::AppendedElement, std::less<>> made_;  // by their paths
};

/// Raises Failure for a path that ends with a slash.
void RefuseLastSlash(const std::string& node_path);

/// The node paths of a file that hold values: elements with elements without elements of their own.
/// Empty for a file that cannot be read.
std::vector<std::string> NodePathsOf(const std::string& file);

}  // namespace sabxml::cli
