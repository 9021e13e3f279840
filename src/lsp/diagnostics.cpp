#include "lsp/diagnostics.h"

#include <algorithm>
#include <set>

namespace sab::lsp {
namespace {

int SeverityOf(check::Severity severity) {
  return severity == check::Severity::kError ? 1 : severity == check::Severity::kWarning ? 2 : 3;
}

}  // namespace

Json DiagnosticOf(Context& context, const check::Finding& finding) {
  std::string message = finding.message;
  if (!finding.suggestion.empty()) message += "; did you mean " + finding.suggestion + "?";
  Json diagnostic = {{"range", ToJson(context.workspace.RangeOf(finding.where))},
                     {"severity", SeverityOf(finding.severity)},
                     {"code", RuleFor(finding.mistake).id},
                     {"source", "sabxml"},
                     {"message", std::move(message)}};
  if (!context.client.has_related_places || finding.related.empty()) return diagnostic;
  Json related = Json::array();
  for (const check::Related& other : finding.related) {
    related.push_back({{"location",
                        {{"uri", context.workspace.UriOf(other.where.file)},
                         {"range", ToJson(context.workspace.RangeOf(other.where))}}},
                       {"message", other.message}});
  }
  diagnostic["relatedInformation"] = std::move(related);
  return diagnostic;
}

std::vector<Json> Diagnostics::Publish(Context& context) {
  std::map<std::string, Json> by_file;  // by address
  for (const auto& [path, document] : context.workspace.Documents()) {
    by_file[document.Uri()] = Json::array();
  }
  std::set<std::string> known;
  for (Application* const application : context.workspace.Applications()) {
    for (const check::Finding& finding : application->Findings().list) {
      const std::string uri = context.workspace.UriOf(finding.where.file);
      Json diagnostic = DiagnosticOf(context, finding);
      // A file of several applications has a mistake once.
      if (!known.insert(uri + BytesOf(diagnostic)).second) continue;
      Json& list = by_file[uri];
      if (!list.is_array()) list = Json::array();
      list.push_back(std::move(diagnostic));
    }
  }
  for (const auto& [uri, bytes] : published_) {
    if (!by_file.contains(uri)) by_file[uri] = Json::array();
  }
  std::vector<Json> notifications;
  std::map<std::string, std::string> published;
  for (auto& [uri, list] : by_file) {
    const bool is_gone = list.empty();
    const std::string bytes = BytesOf(list);
    const auto before = published_.find(uri);
    const bool is_same = before == published_.end() ? false : before->second == bytes;
    const auto open = std::ranges::find_if(
        context.workspace.Documents(),
        [&uri = uri](const auto& document) { return document.second.Uri() == uri; });
    const bool is_open = open != context.workspace.Documents().end();
    if (!is_gone || is_open) published[uri] = bytes;
    if (is_same) continue;
    Json params = {{"uri", uri}, {"diagnostics", std::move(list)}};
    if (is_open && open->second.Version().is_number()) params["version"] = open->second.Version();
    notifications.push_back({{"jsonrpc", "2.0"},
                             {"method", "textDocument/publishDiagnostics"},
                             {"params", std::move(params)}});
  }
  published_ = std::move(published);
  return notifications;
}

}  // namespace sab::lsp
