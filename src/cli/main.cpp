// sabxml: the command-line host of the component server, for people who write and maintain the
// files that it reads.

#include <cstdio>
#include <exception>
#include <iostream>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/platform.h"
#include "cli/suggestion.h"
#include "cli/trace.h"

namespace sabxml::cli {

bool Settings::UsesColour() const {
  if (colour != "auto") return colour == "always";
  return EnvironmentVariable("NO_COLOR").empty() && OutputIsTerminal();
}

void ReportFailure(const Failure& failure) {
  std::cout.flush();
  std::cerr << "sabxml: " << AsMessage(failure.Explanation()) << '\n';
}

void Warn(const std::string& warning) {
  std::cerr << "sabxml: warning: " << AsMessage(warning) << '\n';
}

namespace {

constexpr char kFooter[] =
    "Examples:\n"
    "  sabxml show application.xml               what a host gets from a descriptor\n"
    "  sabxml walk application.xml               all files that an application leads to\n"
    "  sabxml check application.xml              what its authors did wrong\n"
    "  sabxml preview application.xml --open     what its user interfaces look like\n"
    "  sabxml get VeAutoUpdateAdminCfgParser settings.xml /Settings/Update\n"
    "  sabxml settings list                      the settings groups and their keys\n"
    "  sabxml describe VeAppParser               the members of a class\n"
    "  sabxml register --dry-run                 what registering would write\n"
    "  sabxml COMMAND --help                     more about one command\n"
    "  sabxml help COMMAND                       the same\n"
    "\n"
    "A file named - is the standard input.\n"
    "\n"
    "Environment:\n"
    "  SABXML_SERVER    library of the server, as with --server\n"
    "  SABCOM_REGISTRY  file that is the registry, as with --registry\n"
    "  NO_COLOR         no colours unless --colour always is given\n"
    "\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  a file or the server said no; why is on the standard error\n"
    "  2  the command line is not understood\n";

// What of the command line belongs nowhere, and what may be meant.
std::string UnknownWord(const CLI::App& command, const std::string& word) {
  std::vector<std::string> names;
  if (word.starts_with('-')) {
    for (const CLI::App* app = &command; app; app = app->get_parent()) {
      for (const CLI::Option* option : app->get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
      }
    }
    const std::string option = word.substr(0, word.find('='));
    return "there is no option " + option + DidYouMean(option, names);
  }
  for (const CLI::App* app : command.get_subcommands({})) {
    if (!app->get_group().empty()) names.push_back(app->get_name());
  }
  if (names.empty()) return command.get_name() + " takes no further argument: " + word;
  return "there is no command " + word + DidYouMean(word, names);
}

std::string UsageError(const CLI::App* program, const CLI::Error& error) {
  const CLI::App* command = program;
  std::string words = program->get_name();
  for (; !command->get_subcommands().empty(); words += " " + command->get_name()) {
    command = command->get_subcommands().front();
  }
  const std::vector<std::string> unknown = program->remaining(true);
  const std::string reason = unknown.empty() ? error.what() : UnknownWord(*command, unknown[0]);
  return "sabxml: " + AsMessage(reason) + "\nTry: " + words + " --help\n";
}

void AddSettings(CLI::App& program, Settings& settings) {
  program.add_option("--server", settings.server,
                     "Library of the server; by default the registered one, else the one beside "
                     "this program");
  program.add_option("--registry", settings.registry,
                     "File to use as the registry, where the registry is a file");
  program
      .add_option("--colour,--color", settings.colour,
                  "Colours: auto, always or never; auto is for a terminal only")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  program.add_flag("--verbose", settings.is_verbose,
                   "Tell on the standard error which server, registry and files are used, and why");
}

// "help show" is "show --help".
void TakeHelpAsOption(const CLI::App& program, std::vector<std::string>& arguments) {
  arguments.erase(arguments.begin() + 1);
  const CLI::App* command = &program;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (arguments[i].starts_with('-')) continue;
    try {
      command = command->get_subcommand(arguments[i]);
    } catch (const CLI::OptionNotFound&) {
      throw CLI::ValidationError(UnknownWord(*command, arguments[i]));
    }
  }
  arguments.emplace_back("--help");
}

// What a command says to the command line is its own business; what it does can fail.
int RunCommand(CLI::App& program, int argc, char** argv) {
  try {
    std::vector<std::string> arguments = Arguments(argc, argv);
    if (arguments.size() > 1 && arguments[1] == "help") TakeHelpAsOption(program, arguments);
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend() - 1));
    return 0;
  } catch (const CLI::RuntimeError& error) {
    return error.get_exit_code();
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : 2;
  } catch (const Failure& failure) {
    ReportFailure(failure);
  } catch (const std::bad_alloc&) {
    std::cerr << "sabxml: there is not enough memory\n";
  }
  return 1;
}

int Run(int argc, char** argv) {
  CLI::App program("Reads drafting configuration files through the SabXmlParser component server.",
                   "sabxml");
  program.footer(kFooter);
  program.set_version_flag("--version", "sabxml " SABXML_VERSION);
  program.failure_message(UsageError);
  program.require_subcommand(1);
  program.fallthrough();
  program.allow_windows_style_options(false);  // node paths begin with a slash
  Settings settings;
  AddSettings(program, settings);
  // The registry must be chosen before a command runs.
  program.parse_complete_callback([&settings] {
    if (settings.is_verbose) StartTracing();
    if (!settings.registry.empty()) UseRegistryFile(settings.registry);
  });
  AddShow(program, settings);
  AddWalk(program, settings);
  AddCheck(program, settings);
  AddPreview(program);
  AddReferenceCommands(program);
  AddLsp(program);
  AddGet(program, settings);
  AddSettingsCommands(program);
  AddDescribe(program, settings);
  AddRegister(program, settings);
  AddCompletion(program, settings);
  const int result = RunCommand(program, argc, argv);
  if (std::cout.flush()) return result;
  // Who closes a pipe has read enough.
  if (!OutputIsPipe()) std::cerr << "sabxml: the output could not be written\n";
  return 1;
}

}  // namespace
}  // namespace sabxml::cli

int main(int argc, char** argv) try {
  sabxml::cli::PrepareOutput();
  CoInitialize(nullptr);
  const int result = sabxml::cli::Run(argc, argv);
  CoUninitialize();
  return result;
} catch (const std::exception& error) {
  std::fprintf(stderr, "sabxml: %s\n", error.what());
  return 1;
}
