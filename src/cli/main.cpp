// sabxml: the command-line host of the component server, for people who write and maintain the
// files that it reads.

#include <cstdlib>
#include <iostream>

#include "commands.h"
#include "platform.h"

namespace sabxml::cli {

bool Settings::UsesColour() const {
  if (colour != "auto") return colour == "always";
  const char* const no_colour = std::getenv("NO_COLOR");
  return OutputIsTerminal() && !(no_colour && *no_colour);
}

namespace {

constexpr char kFooter[] =
    "Examples:\n"
    "  sabxml show application.xml\n"
    "  sabxml show --json template.xml module.xml\n"
    "  sabxml get VeAutoUpdateAdminCfgParser settings.xml /Settings/Update Interval\n"
    "  sabxml describe VeAppParser\n"
    "  sabxml register --dry-run\n"
    "\n"
    "Exit codes: 0 done; 1 a file or the server said no, and why stands on the standard error;\n"
    "2 the command line is not understood.\n";

int Run(int argc, char** argv) {
  CLI::App program("Reads drafting configuration files through the SabXmlParser component server.",
                   "sabxml");
  program.footer(kFooter);
  program.set_version_flag("--version", "sabxml " SABXML_VERSION);
  program.require_subcommand(1);
  Settings settings;
  program.add_option("--server", settings.server,
                     "Library of the server; by default the registered one, or the one that "
                     "SABXML_SERVER names, or the one beside this program");
  program.add_option("--registry", settings.registry,
                     "File to use as the registry, where the registry is a file");
  program.add_option("--colour", settings.colour, "Colours: auto, always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  // The registry must be chosen before a command runs.
  program.parse_complete_callback([&settings] {
    if (!settings.registry.empty()) UseRegistryFile(settings.registry);
  });
  AddShow(program, settings);
  AddGet(program, settings);
  AddDescribe(program, settings);
  AddRegister(program, settings);
  try {
    std::vector<std::string> arguments = Arguments(argc, argv);
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend() - 1);
    program.parse(reversed);
    return 0;
  } catch (const CLI::RuntimeError& error) {
    return error.get_exit_code();
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : 2;
  } catch (const Failure& failure) {
    std::cout.flush();
    std::cerr << "sabxml: " << failure.what() << '\n';
    return 1;
  } catch (const std::bad_alloc&) {
    std::cerr << "sabxml: there is not enough memory\n";
    return 1;
  }
}

}  // namespace
}  // namespace sabxml::cli

int main(int argc, char** argv) {
  sabxml::cli::PrepareOutput();
  CoInitialize(nullptr);
  const int result = sabxml::cli::Run(argc, argv);
  CoUninitialize();
  return result;
}
