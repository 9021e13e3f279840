#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>

#include "commands.h"
#include "platform.h"

namespace sabxml::cli {
namespace {

constexpr char kHelp[] =
    "The library is the one that --server or SABXML_SERVER names, else the one beside this "
    "program.\n"
    "Unregistering removes what registering wrote and nothing else.\n"
    "\n"
    "Examples:\n"
    "  sabxml register --dry-run                 + is what would be added, - what would go\n"
    "  sabxml register --registry /tmp/test.reg  where the registry is a file\n"
    "  sabxml register --user                    without administrator rights\n"
    "  sabxml unregister\n"
    "\n"
    "A dry run needs a registry that is a file, as everywhere but on Windows: the one that "
    "--registry\n"
    "or SABCOM_REGISTRY names, else sabcom/registry.reg in $XDG_DATA_HOME or ~/.local/share.\n";

void PrintDifference(std::vector<std::string> before, std::vector<std::string> after) {
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  std::vector<std::string> gone;
  std::vector<std::string> added;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                      std::back_inserter(gone));
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(added));
  for (const std::string& line : gone) std::cout << "- " << line << '\n';
  for (const std::string& line : added) std::cout << "+ " << line << '\n';
  if (gone.empty() && added.empty()) std::cout << "Nothing would change.\n";
}

struct Options {
  bool is_dry = false;
  bool for_user = false;
};

using Step = void (Server::*)(bool for_user);

void Run(const Settings& settings, Step step, const Options& options, const char* done) {
  Server server(settings.server);
  if (options.is_dry) {
    const RegistryChange change = TryOnScratchRegistry([&] { (server.*step)(options.for_user); });
    PrintDifference(change.before, change.after);
    return;
  }
  (server.*step)(options.for_user);
  std::cout << server.LibraryPath() << done << '\n';
}

void AddOne(CLI::App& program, const Settings& settings, const char* name, const char* help,
            Step step, const char* done) {
  auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(name, help);
  command->footer(kHelp);
  command->add_flag("--dry-run", options->is_dry, "Print what would change and change nothing");
  command->add_flag("--user", options->for_user,
                    "For the current user alone; needs no administrator rights");
  command->callback([&settings, options, step, done] { Run(settings, step, *options, done); });
}

}  // namespace

void AddRegister(CLI::App& program, const Settings& settings) {
  AddOne(program, settings, "register", "Enter the server's classes in the registry",
         &Server::Register, " is registered");
  AddOne(program, settings, "unregister", "Remove the server's classes from the registry",
         &Server::Unregister, " is no longer registered");
}

}  // namespace sabxml::cli
