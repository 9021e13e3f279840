#include <algorithm>
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/platform.h"
#include "cli/show/tree_printers.h"
#include "cli/show/walk.h"

namespace sabxml::cli {
namespace {

constexpr char kWalkHelp[] =
    "Follows the way of a host: the application's templates, their modules, the modules'\n"
    "environments, and each environment's user-interface file and command files. A path is "
    "resolved\n"
    "against the folder of the file that names it; backslashes are separators. Where no file is\n"
    "named exactly so, letter case does not matter, with a warning. Every file is read by the\n"
    "server; one that is missing or refused is reported, and the walk goes on. A file that is "
    "named\n"
    "again is not read again.\n"
    "\n"
    "Examples:\n"
    "  sabxml walk application.xml\n"
    "  sabxml walk application.xml --json >everything.json\n"
    "\n"
    "Exit codes: 0 every file was read; 1 a file is missing or was refused.\n";

struct WalkOptions {
  std::string file;
  bool as_json = false;
};

void PrintOutline(const std::vector<Walk::Line>& lines, bool colours) {
  std::size_t file_width = 0;
  std::size_t kind_width = 0;
  for (const Walk::Line& line : lines) {
    file_width = std::max(file_width, 2 * line.depth + WidthOf(OnOneLine(line.file)));
    kind_width = std::max(kind_width, line.kind.size());
  }
  const auto coloured = [colours](const char* colour, const std::string& text) {
    return colours ? colour + text + "\x1b[0m" : text;
  };
  for (const Walk::Line& line : lines) {
    std::string file = std::string(2 * line.depth, ' ') + OnOneLine(line.file);
    const std::string content =
        line.has_failed ? coloured("\x1b[31m", "FAILED: " + OnOneLine(line.content)) : line.content;
    file = coloured("\x1b[36m", Padded(file, file_width + 2));
    std::cout << file << (content.empty() ? line.kind : Padded(line.kind, kind_width + 2) + content)
              << '\n';
  }
}

void Run(const Settings& settings, const WalkOptions& options) {
  Server server(settings.server);
  server.TypeLibrary();  // a server that is missing is one failure, not one a file
  JsonPrinter printer(std::cout);
  // JSON is printed during the walk; on the same terminal they would mix.
  const bool shows_progress = ErrorsAreOnTerminal() && !(options.as_json && OutputIsTerminal());
  auto progress = std::make_unique<ProgressLine>(shows_progress);
  Walk walk(server, *progress, options.as_json ? &printer : nullptr);
  walk.Run(options.file);
  progress.reset();

  if (!options.as_json) {
    PrintOutline(walk.Lines(), settings.UsesColour());
    std::cout << walk.FileCount() << (walk.FileCount() == 1 ? " file" : " files");
    if (walk.FailedFileCount() > 0) std::cout << ", " << walk.FailedFileCount() << " failed";
    std::cout << '\n';
  }
  std::cout.flush();
  for (const std::string& warning : walk.Warnings()) {
    Warn(warning);
  }
  for (const Failure& failure : walk.Failures()) ReportFailure(failure);
  if (!walk.Failures().empty()) throw CLI::RuntimeError(1);
}

}  // namespace

void AddWalk(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<WalkOptions>();
  CLI::App* const command = program.add_subcommand(
      "walk", "Read an application and all files that it leads to, and print what they hold");
  command->footer(kWalkHelp);
  command->add_option("FILE", options->file, "Application descriptor")->required();
  command->add_flag("--json", options->as_json, "Print everything that was read, as JSON");
  command->callback([&settings, options] { Run(settings, *options); });
}

}  // namespace sabxml::cli
