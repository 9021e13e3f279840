#include "preview/commands.h"

#include "check/keys.h"
#include "preview/element.h"

namespace sab::preview {

using project::File;
using xml::NodeIndex;

Commands::Commands(const project::Project& project, project::FileIndex ui,
                   project::FileIndex environment) {
  if (environment != project::kNoFile) {
    for (const project::FileIndex file : project.Below(environment, formats::Kind::kCommands)) {
      if (project.At(file).HasSchema()) AddDefinitions(project, file);
    }
  }
  AddFromUserInterface(project.At(ui));
}

void Commands::AddDefinitions(const project::Project& project, project::FileIndex index) {
  const File& file = project.At(index);
  for (const project::Identifier& identifier : file.Identifiers()) {
    const formats::Rule& rule = file.GetSchema().At(identifier.rule);
    if (rule.role != formats::Role::kDefines || rule.subject != formats::Subject::kCommand ||
        file.PlacementOf(identifier.node) != project::Placement::kKnown) {
      continue;
    }
    Command& command = commands_[identifier.text];
    if (command.is_defined) continue;
    command.is_defined = true;
    command.definition = {index, identifier};
    // Of a command file, the first element of a name counts.
    ForEachKnown(file, file.Xml().ParentOf(identifier.node),
                 [&](NodeIndex child, const formats::Rule& value) {
                   if (value.name == "LocalName" && command.local_name.empty()) {
                     command.local_name = file.TextOf(child);
                   }
                 });
  }
}

void Commands::AddFromUserInterface(const File& ui) {
  const auto add = [&](NodeIndex child, const formats::Rule& rule, std::string_view around) {
    if (rule.name == "Prompt") {
      const std::string_view own = Values(ui, child)["Command"];
      Command& command = commands_[own.empty() ? around : own];
      if (command.prompt == xml::kNoNode) command.prompt = child;
    } else if (rule.name == "Image") {
      Command& command = commands_[around];
      if (command.image == xml::kNoNode) command.image = child;
    } else if (rule.name == "Accel") {
      const Values values(ui, child);
      const std::string key = KeyText(values["Key"], values["Ctrl"]);
      if (key.empty()) return;
      std::string& keys = commands_[around].keys;
      keys += keys.empty() ? key : ", " + key;
    }
  };
  ForEachKnown(ui, ui.Xml().Root(), [&](NodeIndex section, const formats::Rule& rule) {
    if (rule.name != "CommandsUI") return;
    ForEachKnown(ui, section, [&](NodeIndex command_ui, const formats::Rule&) {
      std::string_view around;
      ForEachKnown(ui, command_ui, [&](NodeIndex child, const formats::Rule& inner) {
        if (inner.name == "Command") {
          around = ui.TextOf(child);
        } else {
          add(child, inner, around);
        }
      });
    });
  });
}

const Command& Commands::Find(std::string_view identifier) const {
  static const Command kUnknown;
  const auto found = identifier.empty() ? commands_.end() : commands_.find(identifier);
  return found == commands_.end() ? kUnknown : found->second;
}

std::string KeyText(std::string_view key, std::string_view ctrl) {
  return key.empty() || !check::MeansCtrl(ctrl) ? std::string(key) : "Ctrl+" + std::string(key);
}

}  // namespace sab::preview
