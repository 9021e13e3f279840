#include "cli/check/check_output.h"

#include <algorithm>

#include "cli/display_text.h"
#include "cli/trace.h"
#include "cli/tree_sink.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;
using check::Finding;
using check::Location;
using check::Severity;

std::string TextOfPlace(const Location& where) {
  return PlaceIn(OnOneLine(where.file), where.start);
}

std::string CountedThings(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::string PlaceIn(const std::string& path, sab::xml::Place place) {
  if (place.line == 0) return path;
  return path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

std::size_t CheckResult::Count(Severity severity) const {
  return static_cast<std::size_t>(std::ranges::count(findings.list, severity, &Finding::severity));
}

void PrintText(const CheckResult& result, bool uses_colour, std::ostream& out) {
  const auto coloured = [uses_colour](const char* colour, std::string_view text) {
    return uses_colour ? colour + std::string(text) + "\x1b[0m" : std::string(text);
  };
  const auto colour_of = [](Severity severity) {
    return severity == Severity::kError     ? "\x1b[31m"
           : severity == Severity::kWarning ? "\x1b[33m"
                                            : "\x1b[36m";
  };
  for (const Finding& finding : result.findings.list) {
    std::string message = finding.message;
    if (!finding.suggestion.empty()) message += "; did you mean " + finding.suggestion + "?";
    out << coloured("\x1b[1m", TextOfPlace(finding.where) + ":") << ' '
        << coloured(colour_of(finding.severity), NameOf(finding.severity)) << ": "
        << OnOneLine(message) << " [" << RuleFor(finding.mistake).id << "]\n";
    for (const check::Related& related : finding.related) {
      out << "  " << TextOfPlace(related.where) << ": " << OnOneLine(related.message) << '\n';
    }
  }
  for (const std::string& note : result.findings.notes) out << OnOneLine(note) << '\n';
  out << CountedThings(result.files, "file");
  if (result.fixed) out << ", " << CountedThings(*result.fixed, "place") << " fixed";
  out << ": " << CountedThings(result.Count(Severity::kError), "error") << ", "
      << CountedThings(result.Count(Severity::kWarning), "warning");
  if (const std::size_t infos = result.Count(Severity::kInfo); infos > 0) {
    out << ", " << CountedThings(infos, "info");
  }
  if (result.old > 0) out << ", " << result.old << " of the baseline";
  out << '\n';
}

void PrintJson(const CheckResult& result, std::ostream& out) {
  Json findings = Json::array();
  for (const Finding& finding : result.findings.list) {
    Json related = Json::array();
    for (const check::Related& other : finding.related) {
      related.push_back({{"file", other.where.file},
                         {"line", other.where.start.line},
                         {"column", other.where.start.column},
                         {"message", other.message}});
    }
    findings.push_back(
        {{"file", finding.where.file},
         {"line", finding.where.start.line},
         {"column", finding.where.start.column},
         {"end_line", finding.where.end.line},
         {"end_column", finding.where.end.column},
         {"severity", NameOf(finding.severity)},
         {"rule", RuleFor(finding.mistake).id},
         {"message", finding.message},
         {"suggestion", finding.suggestion.empty() ? Json() : Json(finding.suggestion)},
         {"related", std::move(related)}});
  }
  const Json whole = {{"findings", std::move(findings)},
                      {"files", result.files},
                      {"errors", result.Count(Severity::kError)},
                      {"warnings", result.Count(Severity::kWarning)}};
  out << whole.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

Json RuleAsJson(const check::RuleText& rule) {
  return {{"rule", rule.id},
          {"group", rule.group},
          {"severity", NameOf(rule.severity)},
          {"summary", rule.summary},
          {"help", rule.help}};
}

void PrintRules(bool as_json, std::ostream& out) {
  if (as_json) {
    Json all = Json::array();
    for (const check::RuleText& rule : check::Rules()) all.push_back(RuleAsJson(rule));
    out << all.dump(2) << '\n';
    return;
  }
  std::string_view group;
  for (const check::RuleText& rule : check::Rules()) {
    if (rule.group != group) out << (group.empty() ? "" : "\n") << rule.group << '\n';
    group = rule.group;
    out << "  " << Padded(rule.id, 28) << Padded(NameOf(rule.severity), 9) << rule.summary << '\n';
  }
}

void PrintRule(const check::RuleText& rule, bool as_json, std::ostream& out) {
  if (as_json) {
    out << RuleAsJson(rule).dump(2) << '\n';
    return;
  }
  out << rule.id << ": " << rule.summary << "\n  group: " << rule.group
      << "\n  severity: " << NameOf(rule.severity) << "\n\n"
      << rule.help << '\n';
}

void TraceFiles(const sab::project::Project& project) {
  for (sab::project::FileIndex file = 0; file < project.FileCount(); ++file) {
    std::string reason = "it is named";
    for (const sab::project::Link& link : project.Links()) {
      if (link.to != file) continue;
      reason = project.At(link.from).Path() + " names it \"" + std::string(link.path.text) + "\"";
      break;
    }
    Trace("opens " + project.At(file).Path() + ": " + reason);
  }
}

}  // namespace sabxml::cli
