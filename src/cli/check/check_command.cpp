#include <iostream>
#include <memory>

#include "base/com_error.h"
#include "cli/check/baseline.h"
#include "cli/check/check_options.h"
#include "cli/check/check_output.h"
#include "cli/check/fixes.h"
#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/standard_input.h"
#include "platform/file.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;

constexpr char kCheckHelp[] =
    "Looks for mistakes that the server passes over: names, places and values of elements,\n"
    "identifiers, keys and paths. FILE is a descriptor, with all documents that it leads to, a "
    "user\n"
    "interface, a command file, a catalogue or a text template; with --settings also a settings\n"
    "file. The server is not asked.\n"
    "\n"
    "A file .sabxml-check beside the first file, or in a folder around it, holds options, one a\n"
    "line: disable RULE, severity RULE=LEVEL, host-ids FILE, settings CLASS:NODEPATH, baseline\n"
    "FILE, fail-on LEVEL. For the standard input it is that of the current folder. A comment\n"
    "<!-- sabxml-ignore RULE --> keeps a rule from the element after it.\n"
    "\n"
    "Examples:\n"
    "  sabxml check application.xml\n"
    "  sabxml check application.xml --fix --dry-run\n"
    "  sabxml check settings.xml --settings VeDisplayCfgParser:/Settings/Display\n"
    "  sabxml check --explain near-miss-id\n"
    "\n"
    "Exit codes: 0 nothing to fail on; 1 findings; 2 a file cannot be read, or the command line\n"
    "is not understood.\n";

sab::project::Source SourceWithInput(const CheckOptions& options) {
  sab::project::Source source;
  for (const std::string& file : options.files) {
    if (file != kStandardInput) continue;
    std::string reason;
    auto bytes = source.Read(PathToRead(file), reason);
    if (!bytes) throw Misunderstood("the standard input: " + reason);
    source.Open(file, std::move(*bytes));
  }
  return source;
}

void ReadDocuments(sab::project::Project& project, const CheckOptions& options,
                   const sab::project::Source& source, const check::Choices& choices) {
  for (const std::string& file : options.files) {
    auto kind = sab::formats::Kind::kNone;
    if (!choices.settings.empty()) {
      kind = KindToRead(sab::project::File(file, kind, source), choices.settings);
    }
    const sab::project::FileIndex index = project.Read(file, kind);
    const auto& failure = project.At(index).Failure();
    if (failure && failure->reason == sab::project::ReadFailure::Reason::kUnreadable) {
      throw Misunderstood(file + ": " + failure->message);
    }
  }
}

// Changes what is certain, or prints how it would be changed; the source then has the new texts.
std::size_t FixFiles(const CheckOptions& options, sab::project::Source& source,
                     const sab::project::Project& project, const check::Findings& findings) {
  std::size_t count = 0;
  for (const auto& [file, bytes] : FixedFiles(project, findings, count)) {
    std::string reason;
    if (options.is_dry_run) {
      std::cout << DiffOf(file, source.Read(file, reason).value_or(""), bytes);
    } else if (file != kStandardInput) {
      sab::ReplaceFileBytes(FromUtf8(file), bytes);
    }
    source.Open(file, bytes);
  }
  return count;
}

CheckResult ResultOf(const CheckOptions& options) {
  const check::Choices choices = ChoicesOf(options);
  sab::project::Source source = SourceWithInput(options);
  auto project = std::make_unique<sab::project::Project>(source);
  ReadDocuments(*project, options, source, choices);
  TraceFiles(*project);
  CheckResult result;
  result.findings = Check(*project, choices);
  if (options.fixes) {
    result.fixed = FixFiles(options, source, *project, result.findings);
    project = std::make_unique<sab::project::Project>(source);
    ReadDocuments(*project, options, source, choices);
    result.findings = Check(*project, choices);
  }
  result.files = project->FileCount();
  return result;
}

void PrintResult(const CheckOptions& options, const CheckResult& result, bool uses_colour) {
  if (options.format == "sarif") return PrintSarif(result, std::cout);
  if (options.as_json) {
    PrintJson(result, std::cout);
    std::cout.flush();
    for (const std::string& note : result.findings.notes) Warn(note);
    return;
  }
  PrintText(result, uses_colour, std::cout);
}

int RunCheck(const Settings& settings, CheckOptions options) {
  if (options.has_two_formats) {
    throw Misunderstood("--json and --format " + options.format + " contradict each other");
  }
  if (options.lists_rules) {
    PrintRules(options.as_json, std::cout);
    return 0;
  }
  if (!options.explained_rule.empty()) {
    PrintRule(check::CheckedRule(options.explained_rule), options.as_json, std::cout);
    return 0;
  }
  if (options.files.empty()) throw Misunderstood("name a FILE to check");
  if (options.is_dry_run && !options.fixes) throw Misunderstood("--dry-run is for --fix");
  AddConfiguredOptions(options);
  CheckResult result = ResultOf(options);
  if (options.writes_baseline) {
    if (options.baseline.empty()) throw Misunderstood("name the file with --baseline FILE");
    sab::ReplaceFileBytes(FromUtf8(options.baseline), BaselineOf(result, options.baseline));
    result.old = result.findings.list.size();
    result.findings.list.clear();
  } else if (!options.baseline.empty()) {
    WithPlace(options, options.baseline, [&] { RemoveKnown(result, options.baseline); });
  }
  PrintResult(options, result, settings.UsesColour());
  const bool has_errors = result.Count(check::Severity::kError) > 0;
  const bool has_warnings = result.Count(check::Severity::kWarning) > 0;
  const bool fails = options.fail_on == "error"
                         ? has_errors
                         : options.fail_on == "warning" && (has_errors || has_warnings);
  return fails ? 1 : 0;
}

void RunCheckAndReport(const Settings& settings, const CheckOptions& options) {
  int code = 2;
  try {
    code = RunCheck(settings, options);
  } catch (const Misunderstood& error) {
    std::cout.flush();
    std::cerr << "sabxml: " << AsMessage(error.what()) << "\nTry: sabxml check --help\n";
  } catch (const sab::ComError& error) {
    throw Failure(error.what(), error.Code());
  }
  if (code != 0) throw CLI::RuntimeError(code);
}

// One value each time, so that a file may follow it.
CLI::Option* AddRepeatable(CLI::App& command, const char* name, std::vector<std::string>& values,
                           const char* help) {
  return command.add_option(name, values, help)
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace

void AddCheck(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<CheckOptions>();
  options->fail_on.clear();
  CLI::App* const command =
      program.add_subcommand("check", "Look for mistakes of authors in documents");
  command->footer(kCheckHelp);
  command->add_option("FILE", options->files, "Documents; a descriptor with all that it leads to");
  AddRepeatable(*command, "--settings", options->settings,
                "CLASS:NODEPATH of a block of a settings file; may be repeated")
      ->type_name("CLASS:NODEPATH");
  command->add_flag("--json", options->as_json, "Print JSON: the findings, or the rules");
  command->add_option("--format", options->format, "What to print: text, json or sarif")
      ->check(CLI::IsMember({"text", "json", "sarif"}));
  command
      ->add_option("--fail-on", options->fail_on,
                   "What gives the exit code 1: error (the default), warning or never")
      ->check(CLI::IsMember({"error", "warning", "never"}));
  AddRepeatable(*command, "--disable", options->disabled, "RULE to leave out; may be repeated")
      ->type_name("RULE");
  AddRepeatable(*command, "--severity", options->severities,
                "RULE=LEVEL with error, warning, info or none; may be repeated")
      ->type_name("RULE=LEVEL");
  AddRepeatable(*command, "--host-ids", options->host_ids,
                "File with identifiers that the host itself defines, one a line, with their "
                "kind or without; may be repeated");
  command->add_option("--baseline", options->baseline,
                      "File with old findings, which are left out");
  command->add_flag("--write-baseline", options->writes_baseline,
                    "Write all findings to the baseline");
  command->add_flag("--fix", options->fixes,
                    "Change what is certain: letter case, and names with one candidate");
  command->add_flag("--dry-run", options->is_dry_run, "With --fix, print the changes instead");
  command->add_flag("--list-rules", options->lists_rules, "List the rules");
  command->add_option("--explain", options->explained_rule, "Tell about one RULE")
      ->type_name("RULE");
  command->callback([&settings, options, command] {
    CheckOptions chosen = *options;
    chosen.has_two_formats =
        chosen.as_json && command->count("--format") > 0 && chosen.format != "json";
    chosen.as_json = chosen.as_json || chosen.format == "json";
    RunCheckAndReport(settings, chosen);
  });
}

}  // namespace sabxml::cli
