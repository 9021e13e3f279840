#include <filesystem>

#include "cli/check/check_output.h"
#include "cli/tree_sink.h"
#include "project/path_finder.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;
using check::Severity;

std::string_view SarifLevelOf(Severity severity) {
  return severity == Severity::kError     ? "error"
         : severity == Severity::kWarning ? "warning"
                                          : "note";
}

// A relative address where the file is below the current folder or was named so.
std::string SarifAddressOf(const std::string& file) {
  std::error_code ignored;
  std::string path = file;
  bool is_relative = !sab::project::IsAbsolute(file);
  if (!is_relative) {
    const std::filesystem::path relative =
        sab::project::PathOf(file).lexically_relative(std::filesystem::current_path(ignored));
    is_relative = !relative.empty() && *relative.begin() != "..";
    if (is_relative) path = sab::project::TextOf(relative);
  }
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string address;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool is_plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                          (c >= '0' && c <= '9') ||
                          std::string_view("/-._~").find(c) != std::string_view::npos;
    if (is_plain) {
      address += c;
    } else {
      address += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return is_relative ? address
                     : "file://" + std::string(address.starts_with('/') ? "" : "/") + address;
}

Json SarifLocationOf(const check::Location& where) {
  Json location = {
      {"physicalLocation", {{"artifactLocation", {{"uri", SarifAddressOf(where.file)}}}}}};
  if (where.start.line != 0) {
    location["physicalLocation"]["region"] = {{"startLine", where.start.line},
                                              {"startColumn", where.start.column},
                                              {"endLine", where.end.line},
                                              {"endColumn", where.end.column}};
  }
  return location;
}

}  // namespace

void PrintSarif(const CheckResult& result, std::ostream& out) {
  Json rules = Json::array();
  for (const check::RuleText& rule : check::Rules()) {
    rules.push_back({{"id", rule.id},
                     {"shortDescription", {{"text", std::string(rule.summary) + "."}}},
                     {"help", {{"text", rule.help}}},
                     {"defaultConfiguration", {{"level", SarifLevelOf(rule.severity)}}},
                     {"properties", {{"tags", Json::array({rule.group})}}}});
  }
  Json results = Json::array();
  for (const check::Finding& finding : result.findings.list) {
    std::string message = finding.message;
    if (!finding.suggestion.empty()) message += "; did you mean " + finding.suggestion + "?";
    Json one = {{"ruleId", RuleFor(finding.mistake).id},
                {"ruleIndex", static_cast<int>(finding.mistake)},
                {"level", SarifLevelOf(finding.severity)},
                {"message", {{"text", message}}},
                {"locations", Json::array({SarifLocationOf(finding.where)})}};
    Json related = Json::array();
    for (const check::Related& other : finding.related) {
      Json location = SarifLocationOf(other.where);
      location["id"] = related.size();
      location["message"] = {{"text", other.message}};
      related.push_back(std::move(location));
    }
    if (!related.empty()) one["relatedLocations"] = std::move(related);
    results.push_back(std::move(one));
  }
  Json notes = Json::array();
  for (const std::string& note : result.findings.notes) {
    notes.push_back({{"level", "note"}, {"message", {{"text", note}}}});
  }
  Json driver = {{"name", "sabxml"}, {"version", SABXML_VERSION}, {"rules", std::move(rules)}};
  Json run = {{"tool", {{"driver", std::move(driver)}}},
              {"columnKind", "unicodeCodePoints"},
              {"invocations", Json::array({{{"executionSuccessful", true},
                                            {"toolExecutionNotifications", std::move(notes)}}})},
              {"results", std::move(results)}};
  const Json whole = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                      {"version", "2.1.0"},
                      {"runs", Json::array({std::move(run)})}};
  out << whole.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace sabxml::cli
