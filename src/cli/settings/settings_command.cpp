#include <memory>

#include "base/com_error.h"
#include "cli/commands.h"
#include "cli/settings/settings_commands.h"
#include "cli/standard_input.h"

namespace sabxml::cli {
namespace {

constexpr char kSettingsHelp[] =
    "CLASS is the class of a settings group, and NODEPATH the path of the element that holds its\n"
    "keys, since one file may hold several blocks. A file that was saved several times holds\n"
    "several copies of each key, of which a load takes the first.\n"
    "\n"
    "Examples:\n"
    "  sabxml settings list\n"
    "  sabxml settings list VeDisplayCfgParser\n"
    "  sabxml settings get VeDisplayCfgParser settings.xml /Settings/Display PtSize\n"
    "  sabxml settings set VeDisplayCfgParser settings.xml /Settings/Display PtSize=3 "
    "BigCursor=true\n"
    "  sabxml settings unset VeDisplayCfgParser settings.xml /Settings/Display PtSize --backup\n"
    "  sabxml settings dump VeDisplayCfgParser settings.xml /Settings/Display --json\n"
    "  sabxml settings diff VeDisplayCfgParser old.xml new.xml /Settings/Display\n"
    "  sabxml settings compact VeDisplayCfgParser settings.xml /Settings/Display --newest\n";

constexpr char kSetHelp[] =
    "All values are checked before the file is touched: true or false for a flag, numbers that "
    "fit\n"
    "into their width, one semicolon between the elements of a list. 0x… is understood where a\n"
    "number has no sign, as a colour. Afterwards the file has one copy of each key.\n"
    "\n"
    "Example:\n"
    "  sabxml settings set VeDisplayCfgParser settings.xml /Settings/Display "
    "ModelBkColor=0x202020\n";

constexpr char kCompactHelp[] =
    "Keeps the first copy of each key, which is the one that a load takes; with --newest the one\n"
    "that was saved last, so that the file then says what the last save meant.\n";

using Action = void (*)(const SettingsOptions&);

// Below the server's interfaces failures have another type.
void Run(Action action, const SettingsOptions& options) {
  try {
    action(options);
  } catch (const sab::ComError& error) {
    throw Failure(WithStandardInput(error.what()), error.Code());
  }
}

class SettingsCommand {
 public:
  SettingsCommand(CLI::App& parent, const char* name, const char* help, Action action)
      : options_(std::make_shared<SettingsOptions>()),
        command_(*parent.add_subcommand(name, help)) {
    command_.callback([options = options_, action] { Run(action, *options); });
  }

  SettingsOptions& Options() { return *options_; }
  CLI::App& App() { return command_; }

  SettingsCommand& WithClass() {
    command_.add_option("CLASS", options_->class_name, "Class of the group")->required();
    return *this;
  }
  SettingsCommand& WithBlock() {
    WithClass();
    command_.add_option("FILE", options_->file, "Settings file")->required();
    return WithNodePath();
  }
  SettingsCommand& WithNodePath() {
    command_.add_option("NODEPATH", options_->node_path, "Path of the element with the keys")
        ->required();
    return *this;
  }
  SettingsCommand& WithNames(const char* name, const char* help, bool required) {
    command_.add_option(name, options_->names, help)->required(required);
    return *this;
  }
  SettingsCommand& WithJson() {
    command_.add_flag("--json", options_->as_json, "Print JSON");
    return *this;
  }
  SettingsCommand& WithWriteOptions() {
    command_.add_flag("--backup", options_->keeps_backup, "Keep the old file as FILE.bak");
    command_.add_flag("--dry-run", options_->is_dry, "Say what would be done and change nothing");
    return *this;
  }

 private:
  std::shared_ptr<SettingsOptions> options_;
  CLI::App& command_;
};

}  // namespace

void AddSettingsCommands(CLI::App& program) {
  CLI::App& settings =
      *program.add_subcommand("settings", "List, read, compare and change settings of files");
  settings.require_subcommand(1);
  settings.footer(kSettingsHelp);

  SettingsCommand(settings, "list", "List the groups, or the keys of some", ListSettings)
      .WithNames("CLASS", "Classes whose keys are listed", false)
      .WithJson();
  SettingsCommand(settings, "get", "Print values as a load takes them", GetSettings)
      .WithBlock()
      .WithNames("KEY", "Keys; all of them if none is given", false)
      .WithJson();
  SettingsCommand set(settings, "set", "Change values", SetSettings);
  set.WithBlock().WithNames("KEY=VALUE", "Keys and their new values", true).WithWriteOptions();
  set.App().footer(kSetHelp);
  SettingsCommand(settings, "unset", "Remove all copies of keys", UnsetSettings)
      .WithBlock()
      .WithNames("KEY", "Keys", true)
      .WithWriteOptions();
  SettingsCommand(settings, "dump", "Print values with their types, lines and copies", DumpSettings)
      .WithBlock()
      .WithJson();

  SettingsCommand diff(settings, "diff", "Compare what two blocks load as", CompareSettings);
  diff.WithClass();
  diff.App().add_option("A", diff.Options().file, "Settings file")->required();
  diff.App().add_option("B", diff.Options().other_file, "The other file")->required();
  diff.WithNodePath();
  diff.App().add_option("NODEPATH_B", diff.Options().other_path,
                        "Path in the other file, where it differs");
  diff.App().add_flag("--exit-code", diff.Options().tells_by_exit_code,
                      "End with 1 where there are differences");

  SettingsCommand compact(settings, "compact", "Leave one copy of each key", CompactSettings);
  compact.WithBlock().WithWriteOptions();
  compact.App().add_flag("--newest", compact.Options().keeps_newest,
                         "Keep what was saved last, not what a load takes");
  compact.App().footer(kCompactHelp);
}

}  // namespace sabxml::cli
