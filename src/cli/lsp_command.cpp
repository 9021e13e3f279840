#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/platform.h"
#include "lsp/serve.h"

namespace sabxml::cli {
namespace {

constexpr char kLspHelp[] =
    "An editor starts it and speaks the Language Server Protocol 3.17 with it over the standard\n"
    "input and output. It shows what \"sabxml check\" finds while files are written, completes\n"
    "elements and values, explains them, finds and renames identifiers. It never writes a file\n"
    "itself. docs/authoring.md tells how to set up editors.\n"
    "\n"
    "Exit codes: 0 the client has shut it down; 1 the client is gone without that.\n";

}  // namespace

void AddLsp(CLI::App& program) {
  CLI::App* const command =
      program.add_subcommand("lsp", "Serve an editor with what is known of the files");
  command->footer(kLspHelp);
  auto is_stdio = std::make_shared<bool>(false);
  command->add_flag("--stdio", *is_stdio, "Use the standard input and output, as it does anyway");
  command->callback([is_stdio] {
    const int code = sab::lsp::Serve(SABXML_VERSION, ReadStandardInput, std::cout);
    if (code != 0) throw CLI::RuntimeError(code);
  });
}

}  // namespace sabxml::cli
