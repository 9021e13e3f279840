#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "cli/host/automation.h"
#include "cli/host/server.h"

namespace sabxml::cli {

/// What holds for every command.
struct Settings {
  std::string server;    ///< path of the server's library; empty for the registered one
  std::string registry;  ///< file that is the registry; empty for the usual one
  std::string colour = "auto";
  bool is_verbose = false;

  bool UsesColour() const;
};

/// Write to the standard error.
void ReportFailure(const Failure& failure);
void Warn(const std::string& warning);

// Each adds its commands to the program; what they do runs when they are chosen.
void AddShow(CLI::App& program, const Settings& settings);
void AddGet(CLI::App& program, const Settings& settings);
void AddWalk(CLI::App& program, const Settings& settings);
/// Looks at documents without the server.
void AddCheck(CLI::App& program, const Settings& settings);
/// Tell of formats and identifiers without the server: find, explain, schema.
void AddReferenceCommands(CLI::App& program);
/// Draws user interfaces without the server.
void AddPreview(CLI::App& program);
/// Serves an editor, without the component server.
void AddLsp(CLI::App& program);
/// Works on files without the server.
void AddSettingsCommands(CLI::App& program);
void AddDescribe(CLI::App& program, const Settings& settings);
void AddRegister(CLI::App& program, const Settings& settings);
/// For the scripts of shells.
void AddCompletion(CLI::App& program, const Settings& settings);

}  // namespace sabxml::cli
