#include "cli/check/baseline.h"

#include <algorithm>
#include <map>
#include <set>

#include "cli/check/check_options.h"
#include "cli/display_text.h"
#include "project/source.h"

namespace sabxml::cli {
namespace {

std::string BaselineLineOf(const sab::check::Finding& finding) {
  return OnOneLine(finding.where.file) + ": " + OnOneLine(finding.message) + " [" +
         std::string(RuleFor(finding.mistake).id) + "]";
}

}  // namespace

void RemoveKnown(CheckResult& result, const std::string& baseline) {
  std::string reason;
  const auto bytes = sab::project::Source().Read(baseline, reason);
  if (!bytes) throw Misunderstood(baseline + ": " + reason);
  std::map<std::string, std::size_t> known;
  for (std::size_t at = 0; at < bytes->size();) {
    const std::size_t end = std::min(bytes->find('\n', at), bytes->size());
    std::string line = bytes->substr(at, end - at);
    if (line.ends_with('\r')) line.pop_back();
    ++known[line];
    at = end + 1;
  }
  result.old = std::erase_if(result.findings.list, [&known](const sab::check::Finding& finding) {
    const auto found = known.find(BaselineLineOf(finding));
    if (found == known.end() || found->second == 0) return false;
    --found->second;
    return true;
  });
}

std::string BaselineOf(const CheckResult& result) {
  std::multiset<std::string> lines;
  for (const sab::check::Finding& finding : result.findings.list)
    lines.insert(BaselineLineOf(finding));
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace sabxml::cli
