#include <charconv>
#include <memory>

#include "base/com_error.h"
#include "cli/commands.h"
#include "cli/settings/settings_commands.h"
#include "cli/standard_input.h"

namespace sabxml::cli {
namespace {

constexpr char kSettingsHelp[] =
    "CLASS is the class of a settings group, and NODEPATH the path of the element that holds its\n"
    "keys, since one file may hold several blocks; CLASS:NODEPATH among the keys goes on with\n"
    "another block of the same file. A file that was saved several times holds several copies of\n"
    "each key, of which a load takes the first.\n"
    "\n"
    "Examples:\n"
    "  sabxml settings list\n"
    "  sabxml settings get VeDisplayCfgParser settings.xml /Settings/Display PtSize\n"
    "  sabxml settings set VeDisplayCfgParser settings.xml /Settings/Display PtSize=3\n"
    "  sabxml settings COMMAND --help            more about one command\n";

constexpr char kListHelp[] =
    "Examples:\n"
    "  sabxml settings list\n"
    "  sabxml settings list VeDisplayCfgParser VeTxtParser\n";

constexpr char kRangeHelp[] =
    "Example:\n"
    "  sabxml settings range VeSelectCfgParser GripSize PickBoxSize\n";

constexpr char kGetValuesHelp[] =
    "With --default, a key that the file does not have gives VALUE, and so does a missing\n"
    "block. With --is-set nothing is printed.\n"
    "\n"
    "Examples:\n"
    "  sabxml settings get VeDisplayCfgParser settings.xml /Settings/Display PtSize BigCursor\n"
    "  sabxml settings get VeDisplayCfgParser settings.xml /Settings/Display PtSize --default 3\n"
    "  sabxml settings get VeTxtParser settings.xml /Settings/Text DefTxtHei \\\n"
    "      VeDisplayCfgParser:/Settings/Display PtSize\n"
    "\n"
    "Exit codes: 0 done; with --is-set, 1 a key is not in the file, 2 that cannot be told.\n";

constexpr char kSetHelp[] =
    "All values are checked before the file is touched: true or false for a flag, numbers that "
    "fit\n"
    "into their width, one semicolon between the elements of a list. 0x… is understood where a\n"
    "number has no sign, as a colour. Afterwards the file has one copy of each key. Several\n"
    "blocks are saved as one step.\n"
    "\n"
    "Examples:\n"
    "  sabxml settings set VeDisplayCfgParser settings.xml /Settings/Display "
    "ModelBkColor=0x202020\n"
    "  sabxml settings set VeDisplayCfgParser settings.xml /Settings/Display PtSize=3 \\\n"
    "      VeSelectCfgParser:/Settings/Selection GripSize=8\n"
    "  sabxml settings set VeTxtParser new.xml /Settings/Text InCodePage=936 --create\n";

constexpr char kUnsetHelp[] =
    "Example:\n"
    "  sabxml settings unset VeDisplayCfgParser settings.xml /Settings/Display PtSize --backup\n";

constexpr char kDumpHelp[] =
    "Examples:\n"
    "  sabxml settings dump VeDisplayCfgParser settings.xml /Settings/Display\n"
    "  sabxml settings dump VeDisplayCfgParser settings.xml /Settings/Display --json "
    ">display.json\n"
    "  sabxml settings dump VeDisplayCfgParser settings.xml /Settings/Display \\\n"
    "      VeTxtParser:/Settings/Text --json >all.json\n";

constexpr char kLoadHelp[] =
    "DUMP is what \"sabxml settings dump --json\" printed, also edited; the standard input unless\n"
    "one is named. Its class and node path say where the values go. Keys that the dumped file did\n"
    "not have are removed, keys that the dump does not name stay. All blocks of a dump are saved\n"
    "as one step.\n"
    "\n"
    "Examples:\n"
    "  sabxml settings load settings.xml display.json --backup\n"
    "  sabxml settings load new.xml all.json --create\n";

constexpr char kEditHelp[] =
    "Opens the program that VISUAL or EDITOR names with a line KEY=VALUE for each key. What is\n"
    "wrong is told, and can be edited again; only lines that were changed change the file.\n"
    "\n"
    "Example:\n"
    "  sabxml settings edit VeDisplayCfgParser settings.xml /Settings/Display\n";

constexpr char kWatchHelp[] =
    "Prints a line for each value that a load would give anew, as soon as the file is saved,\n"
    "until it is interrupted. With --json each line is a JSON document.\n"
    "\n"
    "Example:\n"
    "  sabxml settings watch VeDisplayCfgParser settings.xml /Settings/Display PtSize\n";

constexpr char kDiffHelp[] =
    "Example:\n"
    "  sabxml settings diff VeDisplayCfgParser old.xml new.xml /Settings/Display\n"
    "\n"
    "Exit codes: 0 done; with --exit-code, 1 there are differences, 2 they cannot be told.\n";

constexpr char kCompactHelp[] =
    "Keeps the first copy of each key, which is the one that a load takes; with --newest the one\n"
    "that was saved last, so that the file then says what the last save meant.\n"
    "\n"
    "Example:\n"
    "  sabxml settings compact VeDisplayCfgParser settings.xml /Settings/Display --newest\n";

using Action = void (*)(const SettingsOptions&);

// Below the server's interfaces failures have another type.
void Run(Action action, const SettingsOptions& options) {
  try {
    action(options);
  } catch (const sab::ComError& error) {
    throw Failure(WithStandardInput(error.what()), error.Code());
  }
}

// Where 1 is an answer, a failure ends with another code.
void RunWithAnswer(Action action, const SettingsOptions& options) {
  const bool is_answer = options.only_tells_whether_set || options.tells_by_exit_code;
  try {
    Run(action, options);
  } catch (const Failure& failure) {
    if (!is_answer) throw;
    ReportFailure(failure);
    throw CLI::RuntimeError(2);
  }
}

class SettingsCommand {
 public:
  SettingsCommand(CLI::App& parent, const char* name, const char* about, const char* help,
                  Action action)
      : options_(std::make_shared<SettingsOptions>()),
        command_(*parent.add_subcommand(name, about)) {
    command_.footer(help);
    command_.callback([options = options_, action] { RunWithAnswer(action, *options); });
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
  SettingsCommand& WithCreate() {
    command_.add_flag("--create", options_->may_create,
                      "Make the file and the elements of NODEPATH where they are missing");
    return *this;
  }
  SettingsCommand& WithWriteOptions() {
    command_.add_flag("--backup", options_->keeps_backup, "Keep the old file as FILE.bak");
    command_.add_flag("--dry-run", options_->is_dry, "Say what would be done and change nothing");
    return WithJson();
  }

 private:
  std::shared_ptr<SettingsOptions> options_;
  CLI::App& command_;
};

unsigned NumberOfChanges(const std::string& value) {
  unsigned number = 0;
  const char* const end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, number);
  if (error == std::errc() && stop == end && number > 0) return number;
  throw CLI::ValidationError("--changes", value + " is refused: a whole number from 1 is wanted");
}

void AddReading(CLI::App& settings) {
  SettingsCommand(settings, "list", "List the groups, or the keys of some", kListHelp, ListSettings)
      .WithNames("CLASS", "Classes whose keys are listed", false)
      .WithJson();
  SettingsCommand(settings, "range", "Tell what keys take: type, limits, default, meaning",
                  kRangeHelp, DescribeRanges)
      .WithClass()
      .WithNames("KEY", "Keys; all of them if none is given", false)
      .WithJson();
  SettingsCommand get(settings, "get", "Print values as a load takes them", kGetValuesHelp,
                      GetSettings);
  get.WithBlock().WithNames("KEY", "Keys; all of them if none is given", false).WithJson();
  SettingsOptions& options = get.Options();
  get.App()
      .add_option_function<std::string>(
          "--default",
          [&options](const std::string& value) {
            options.has_default = true;
            options.default_value = value;
          },
          "VALUE of keys that the file does not have")
      ->type_name("VALUE");
  get.App().add_flag("--is-set", options.only_tells_whether_set,
                     "Print nothing: tell by the exit code whether the file has all keys");
  SettingsCommand(settings, "dump", "Print values with their types, lines and copies", kDumpHelp,
                  DumpSettings)
      .WithBlock()
      .WithNames("KEY", "Keys; all of them if none is given", false)
      .WithJson();

  SettingsCommand diff(settings, "diff", "Compare what two blocks load as", kDiffHelp,
                       CompareSettings);
  diff.WithClass();
  diff.App().add_option("A", diff.Options().file, "Settings file")->required();
  diff.App().add_option("B", diff.Options().other_file, "The other file")->required();
  diff.WithNodePath();
  diff.App().add_option("NODEPATH_B", diff.Options().other_path,
                        "Path in the other file, where it differs");
  diff.App().add_flag("--exit-code", diff.Options().tells_by_exit_code,
                      "End with 1 where there are differences");
  diff.WithJson();

  SettingsCommand watch(settings, "watch", "Print values that change", kWatchHelp, WatchSettings);
  watch.WithBlock().WithNames("KEY", "Keys; all of them if none is given", false).WithJson();
  watch.App()
      .add_option_function<std::string>(
          "--changes",
          [&options = watch.Options()](const std::string& value) {
            options.changes = NumberOfChanges(value);
          },
          "End after this NUMBER of changed values")
      ->type_name("NUMBER");
}

void AddWriting(CLI::App& settings) {
  SettingsCommand(settings, "set", "Change values", kSetHelp, SetSettings)
      .WithBlock()
      .WithNames("KEY=VALUE", "Keys and their new values", true)
      .WithCreate()
      .WithWriteOptions();
  SettingsCommand(settings, "unset", "Remove all copies of keys", kUnsetHelp, UnsetSettings)
      .WithBlock()
      .WithNames("KEY", "Keys", true)
      .WithWriteOptions();
  SettingsCommand load(settings, "load", "Take over values from a dump", kLoadHelp,
                       LoadSettingsDump);
  load.App().add_option("FILE", load.Options().file, "Settings file")->required();
  load.Options().dump = kStandardInput;
  load.App().add_option("DUMP", load.Options().dump, "File with the JSON of a dump");
  load.WithCreate().WithWriteOptions();
  SettingsCommand(settings, "edit", "Change values in an editor", kEditHelp, EditSettings)
      .WithBlock()
      .WithCreate()
      .WithWriteOptions();
  SettingsCommand compact(settings, "compact", "Leave one copy of each key", kCompactHelp,
                          CompactSettings);
  compact.WithBlock()
      .WithNames("BLOCK", "CLASS:NODEPATH of further blocks of the file", false)
      .WithWriteOptions();
  compact.App().add_flag("--newest", compact.Options().keeps_newest,
                         "Keep what was saved last, not what a load takes");
}

}  // namespace

void AddSettingsCommands(CLI::App& program) {
  CLI::App& settings =
      *program.add_subcommand("settings", "List, read, compare and change settings of files");
  settings.require_subcommand(1);
  settings.footer(kSettingsHelp);
  AddReading(settings);
  AddWriting(settings);
}

}  // namespace sabxml::cli
