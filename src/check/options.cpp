#include "check/options.h"

#include <filesystem>

#include "project/path_finder.h"
#include "project/source.h"
#include "text/distance.h"
#include "xml/error.h"
#include "xml/path.h"

namespace sab::check {
namespace {

using project::PathOf;
using project::TextOf;
using text::DidYouMean;

std::string BytesOfOptionFile(const std::string& file) {
  std::string reason;
  auto bytes = project::Source().Read(file, reason);
  if (!bytes) throw OptionError(file + ": " + reason);
  return std::move(*bytes);
}

// Whether a path is understood does not depend on the document.
void CheckNodePath(const std::string& path) {
  const xml::Document any("<a/>");
  try {
    if (!path.empty()) xml::Paths(any).SelectFirst(path);
  } catch (const xml::Error& error) {
    throw OptionError("the node path " + path + ": " + error.what());
  }
}

SettingsChoice SettingsOf(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == text.npos) {
    throw OptionError("--settings " + text + ": write CLASS:NODEPATH, " +
                      "VeDisplayCfgParser:/Settings/Display");
  }
  SettingsChoice choice{text.substr(0, colon), text.substr(colon + 1)};
  CheckNodePath(choice.node_path);
  if (SettingsGroupNamed(choice.class_name) || KeepsAnyKey(choice.class_name)) {
    return choice;
  }
  const std::string_view nearest = NearestSettingsGroup(choice.class_name);
  throw OptionError("there is no settings group " + choice.class_name +
                    (nearest.empty() ? "" : "; did you mean " + std::string(nearest) + "?"));
}

void AddOptionLine(Options& options, std::string line, const std::filesystem::path& folder,
                   const std::string& place) {
  line.erase(0, line.find_first_not_of("- \t"));
  line.erase(line.find_last_not_of(" \t\r") + 1);
  const std::size_t end = line.find_first_of(" \t=");
  const std::string name = line.substr(0, end);
  std::string value = end == line.npos ? "" : line.substr(end);
  value.erase(0, std::min(value.find_first_not_of(" \t="), value.size()));
  if (value.empty()) throw OptionError(name + " has no value");
  const std::string path = TextOf((folder / PathOf(value)).lexically_normal());
  options.places[value] = options.places[path] = place;
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
    throw OptionError(
        "there is no option " + name +
        DidYouMean(name, {"disable", "severity", "host-ids", "settings", "fail-on", "baseline"}));
  }
}

void AddSeverity(Choices& choices, const std::string& text) {
  const std::size_t equals = text.find('=');
  const auto severity = equals == text.npos ? std::nullopt : SeverityNamed(text.substr(equals + 1));
  if (!severity) {
    throw OptionError("--severity " + text +
                      ": write RULE=LEVEL with error, warning, info or none");
  }
  choices.severities[CheckedRule(text.substr(0, equals)).mistake] = *severity;
}

}  // namespace

const RuleText& CheckedRule(const std::string& id) {
  if (const RuleText* const rule = RuleNamed(id)) return *rule;
  std::vector<std::string> ids;
  for (const RuleText& rule : Rules()) ids.emplace_back(rule.id);
  throw OptionError("there is no rule " + id +
                    DidYouMean(id, ids, "\"sabxml check --list-rules\" lists all of them"));
}

std::string OptionFileFor(const std::string& file) {
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

void AddOptionFile(Options& options, const std::string& path) {
  const std::string text = BytesOfOptionFile(path);
  unsigned number = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string line = text.substr(at, end - at);
    const std::string place = path + ":" + std::to_string(++number);
    at = end + 1;
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == line.npos || line[first] == '#') continue;
    try {
      AddOptionLine(options, line.substr(first), PathOf(path).parent_path(), place);
    } catch (const OptionError& error) {
      throw OptionError(place + ": " + error.what());
    }
  }
}

Choices ChoicesOf(const Options& options) {
  Choices choices;
  const auto add = [&options](const std::vector<std::string>& values, const auto& add_one) {
    for (const std::string& value : values) {
      WithPlace(options, value, [&] { add_one(value); });
    }
  };
  add(options.disabled, [&choices](const std::string& rule) {
    choices.severities[CheckedRule(rule).mistake] = Severity::kNone;
  });
  add(options.severities, [&choices](const std::string& text) { AddSeverity(choices, text); });
  for (const std::string& file : options.host_ids) {
    const std::string lines = WithPlace(options, file, [&] { return BytesOfOptionFile(file); });
    const std::string failure = choices.host_ids.Add(lines);
    if (!failure.empty()) throw OptionError(file + ":" + failure);
  }
  add(options.settings,
      [&choices](const std::string& text) { choices.settings.push_back(SettingsOf(text)); });
  return choices;
}

}  // namespace sab::check
