#include "cli/check/check_options.h"

#include <filesystem>
#include <set>

#include "cli/display_text.h"
#include "cli/standard_input.h"
#include "cli/suggestion.h"
#include "cli/trace.h"
#include "project/path_finder.h"
#include "project/source.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;
using sab::project::PathOf;
using sab::project::TextOf;

std::string BytesOfOptionFile(const std::string& file) {
  std::string reason;
  auto bytes = sab::project::Source().Read(file, reason);
  if (!bytes) throw Misunderstood(file + ": " + reason);
  return std::move(*bytes);
}

const check::RuleText& CheckedRule(const std::string& id) {
  if (const check::RuleText* const rule = check::RuleNamed(id)) return *rule;
  std::vector<std::string> ids;
  for (const check::RuleText& rule : check::Rules()) ids.emplace_back(rule.id);
  throw Misunderstood("there is no rule " + id +
                      DidYouMean(id, ids, "\"sabxml check --list-rules\" lists all of them"));
}

check::SettingsChoice SettingsOf(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == text.npos) {
    throw Misunderstood("--settings " + text + ": write CLASS:NODEPATH, " +
                        "VeDisplayCfgParser:/Settings/Display");
  }
  check::SettingsChoice choice{text.substr(0, colon), text.substr(colon + 1)};
  if (check::SettingsGroupNamed(choice.class_name) || check::KeepsAnyKey(choice.class_name)) {
    return choice;
  }
  const std::string_view nearest = check::NearestSettingsGroup(choice.class_name);
  throw Misunderstood("there is no settings group " + choice.class_name +
                      (nearest.empty() ? "" : "; did you mean " + std::string(nearest) + "?"));
}

// The file of options that is nearest to a file: in its folder, or in one around it.
std::string ConfigurationFor(const std::string& file) {
  std::error_code error;
  std::filesystem::path folder = PathOf(file).parent_path();
  const std::filesystem::path absolute = std::filesystem::absolute(PathOf(file), error);
  std::size_t levels = 0;
  for (auto part = absolute.begin(); part != absolute.end(); ++part) ++levels;
  for (; levels > 1; --levels) {
    const std::filesystem::path candidate = folder / ".sabxml-check";
    if (std::filesystem::is_regular_file(candidate, error)) {
      return TextOf(candidate.lexically_normal());
    }
    folder /= "..";
  }
  return {};
}

void AddOptionLine(CheckOptions& options, std::string line, const std::filesystem::path& folder) {
  line.erase(0, line.find_first_not_of("- \t"));
  const std::size_t end = line.find_first_of(" \t=");
  const std::string name = line.substr(0, end);
  std::string value = end == line.npos ? "" : line.substr(end);
  value.erase(0, std::min(value.find_first_not_of(" \t="), value.size()));
  value.erase(value.find_last_not_of(" \t\r") + 1);
  if (value.empty()) throw Misunderstood(name + " has no value");
  const std::string path = TextOf((folder / PathOf(value)).lexically_normal());
  if (name == "disable") {
    options.disabled.push_back(value);
  } else if (name == "severity") {
    options.severities.insert(options.severities.begin(), value);
  } else if (name == "host-ids") {
    options.host_ids.push_back(path);
  } else if (name == "settings") {
    options.settings.push_back(value);
  } else if (name == "fail-on") {
    options.fail_on = value;
  } else if (name == "baseline") {
    if (options.baseline.empty()) options.baseline = path;
  } else {
    throw Misunderstood(
        "there is no option " + name +
        DidYouMean(name, {"disable", "severity", "host-ids", "settings", "fail-on", "baseline"}));
  }
}

}  // namespace

void AddConfiguredOptions(CheckOptions& options) {
  std::set<std::string> known;
  const std::string fail_on = std::exchange(options.fail_on, "");
  for (const std::string& file : options.files) {
    if (file == kStandardInput) continue;
    const std::string configuration = ConfigurationFor(file);
    if (configuration.empty() || !known.insert(configuration).second) continue;
    Trace("opens " + configuration + ": options for " + file);
    const std::string text = BytesOfOptionFile(configuration);
    unsigned number = 0;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size());
      const std::string line = text.substr(at, end - at);
      at = end + 1;
      ++number;
      const std::size_t first = line.find_first_not_of(" \t\r");
      if (first == line.npos || line[first] == '#') continue;
      try {
        AddOptionLine(options, line.substr(first), PathOf(configuration).parent_path());
      } catch (const Misunderstood& error) {
        throw Misunderstood(configuration + ":" + std::to_string(number) + ": " + error.what());
      }
    }
  }
  if (!fail_on.empty()) options.fail_on = fail_on;
  if (options.fail_on.empty()) options.fail_on = "error";
  if (options.fail_on != "error" && options.fail_on != "warning" && options.fail_on != "never") {
    throw Misunderstood("--fail-on takes error, warning or never, not " + options.fail_on);
  }
}

check::Choices ChoicesOf(const CheckOptions& options) {
  check::Choices choices;
  for (const std::string& rule : options.disabled) {
    choices.severities[CheckedRule(rule).mistake] = check::Severity::kNone;
  }
  for (const std::string& text : options.severities) {
    const std::size_t equals = text.find('=');
    const auto severity =
        equals == text.npos ? std::nullopt : check::SeverityNamed(text.substr(equals + 1));
    if (!severity) {
      throw Misunderstood("--severity " + text +
                          ": write RULE=LEVEL with error, warning, info or none");
    }
    choices.severities[CheckedRule(text.substr(0, equals)).mistake] = *severity;
  }
  for (const std::string& file : options.host_ids) choices.host_ids.Add(BytesOfOptionFile(file));
  for (const std::string& text : options.settings) choices.settings.push_back(SettingsOf(text));
  return choices;
}

}  // namespace sabxml::cli
