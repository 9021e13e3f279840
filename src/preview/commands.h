#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "check/host_ids.h"
#include "project/project.h"

namespace sab::preview {

/// What the files say of a command.
struct Command {
  bool is_defined = false;
  project::Occurrence definition;  ///< its identifier in a command file
  std::string_view local_name;
  xml::NodeIndex prompt = xml::kNoNode;  ///< the first one in the user interface
  xml::NodeIndex image = xml::kNoNode;   ///< likewise
  std::string keys;                      ///< "Ctrl+L, F2"
};

/// The commands that a user interface can name: those of its environment and what the user
/// interface itself says of them.
class Commands {
 public:
  /// @param environment kNoFile for a user interface alone: no command has a definition then
  Commands(const project::Project& project, project::FileIndex ui, project::FileIndex environment);

  /// A command without anything for an unknown one.
  const Command& Find(std::string_view identifier) const;

 private:
  void AddDefinitions(const project::Project& project, project::FileIndex file);
  void AddFromUserInterface(const project::File& ui);

  std::unordered_map<std::string_view, Command> commands_;
};

/// "Ctrl+L" of the texts of an accelerator.
std::string KeyText(std::string_view key, std::string_view ctrl);

}  // namespace sab::preview
