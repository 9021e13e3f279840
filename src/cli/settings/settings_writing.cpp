#include <CLI/CLI.hpp>

#include "cli/settings/settings_changes.h"

namespace sabxml::cli {
namespace {

struct Assignment {
  std::string key;
  std::string value;
};

Assignment AssignmentOf(const std::string& argument) {
  const std::size_t sign = argument.find('=');
  if (sign == std::string::npos || sign == 0)
    throw CLI::ValidationError("settings set", "write KEY=VALUE instead of \"" + argument + "\"");
  return {argument.substr(0, sign), argument.substr(sign + 1)};
}

// Every block needs something that is done to it; a misspelt block would else be passed over.
void RequireNames(const NamedBlock& named, const char* command, const char* what) {
  if (!named.names.empty()) return;
  throw CLI::ValidationError(command, std::string("name a ") + what + " for " + named.Title());
}

}  // namespace

void SetSettings(const SettingsOptions& options) {
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  for (const NamedBlock& named : blocks) {
    for (const std::string& name : named.names) AssignmentOf(name);
    RequireNames(named, "settings set", "KEY=VALUE");
  }
  SettingsChanges changes(options);
  for (const NamedBlock& named : blocks) {
    SettingsBlock& block = changes.Block(named.group, named.node_path);
    for (const std::string& name : named.names) {
      const auto [key, value] = AssignmentOf(name);
      changes.Set(block, key, value);
    }
  }
  changes.Finish();
}

void UnsetSettings(const SettingsOptions& options) {
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  for (const NamedBlock& named : blocks) RequireNames(named, "settings unset", "KEY");
  SettingsChanges changes(options);
  for (const NamedBlock& named : blocks) {
    SettingsBlock& block = changes.Block(named.group, named.node_path);
    for (const std::string& key : named.names) changes.Unset(block, key);
  }
  changes.Finish();
}

void CompactSettings(const SettingsOptions& options) {
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  for (const NamedBlock& named : blocks) {
    if (named.names.empty()) continue;
    throw CLI::ValidationError(
        "settings compact", "all keys of a block are compacted; BLOCK is CLASS:NODEPATH, and \"" +
                                named.names.front() + "\" is not");
  }
  SettingsChanges changes(options);
  for (const NamedBlock& named : blocks) {
    SettingsBlock& block = changes.Block(named.group, named.node_path);
    for (SettingsEntry& entry : block.Entries()) {
      if (entry.copies.size() < 2) continue;
      const std::size_t kept = options.keeps_newest ? block.NewestCopy(entry) : 0;
      changes.KeepOnly(block, std::move(entry), kept);
    }
  }
  changes.Finish();
}

}  // namespace sabxml::cli
