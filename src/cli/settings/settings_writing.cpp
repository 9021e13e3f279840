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

}  // namespace

void SetSettings(const SettingsOptions& options) {
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  for (const NamedBlock& named : blocks) {
    for (const std::string& name : named.names) AssignmentOf(name);
    if (named.names.empty())
      throw CLI::ValidationError("settings set", "name a KEY=VALUE for " + named.Title());
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
  SettingsChanges changes(options);
  for (const NamedBlock& named : BlocksOf(options)) {
    SettingsBlock& block = changes.Block(named.group, named.node_path);
    for (const std::string& key : named.names) changes.Unset(block, key);
  }
  changes.Finish();
}

void CompactSettings(const SettingsOptions& options) {
  SettingsChanges changes(options);
  for (const NamedBlock& named : BlocksOf(options)) {
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
