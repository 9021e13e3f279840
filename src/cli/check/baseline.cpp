#include "cli/check/baseline.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "cli/check/check_options.h"
#include "cli/display_text.h"
#include "cli/standard_input.h"
#include "project/path_finder.h"
#include "project/source.h"

namespace sabxml::cli {
namespace {

namespace project = sab::project;

// Begins a baseline. One without this line is of an older version and has paths as they were
// printed.
constexpr char kHead[] = "# paths are relative to the folder of this file";

std::string LineWith(const sab::check::Finding& finding, const std::string& file,
                     const std::string& message) {
  return OnOneLine(file) + ": " + OnOneLine(message) + " [" +
         std::string(RuleFor(finding.mistake).id) + "]";
}

// Findings as lines of the baselines of a folder.
class BaselineLines {
 public:
  explicit BaselineLines(const std::string& baseline)
      : folder_(project::PathOf(project::FullPathOf(baseline)).parent_path()) {}

  std::string LineOf(const sab::check::Finding& finding) const {
    std::string message = finding.message;
    std::size_t at = 0;
    for (const std::string& path : finding.paths) {  // in the order of the message
      const std::size_t found = message.find(path, at);
      if (path.empty() || found == message.npos) continue;
      const std::string relative = RelativePathOf(path);
      message.replace(found, path.size(), relative);
      at = found + relative.size();
    }
    return LineWith(finding, RelativePathOf(finding.where.file), message);
  }

 private:
  std::string RelativePathOf(const std::string& path) const {
    if (path == kStandardInput) return path;
    const std::string full = project::FullPathOf(path);
    const std::string relative = project::TextOf(project::PathOf(full).lexically_relative(folder_));
    return relative.empty() ? full : relative;  // on another drive
  }

  std::filesystem::path folder_;
};

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
  const auto take = [&known](const std::string& line) {
    const auto found = known.find(line);
    if (found == known.end() || found->second == 0) return false;
    --found->second;
    return true;
  };
  const BaselineLines lines(baseline);
  const bool is_old = !known.contains(kHead);
  result.old = std::erase_if(result.findings.list, [&](const sab::check::Finding& finding) {
    return take(lines.LineOf(finding)) ||
           (is_old && take(LineWith(finding, finding.where.file, finding.message)));
  });
}

std::string BaselineOf(const CheckResult& result, const std::string& baseline) {
  const BaselineLines format(baseline);
  std::multiset<std::string> lines;
  for (const sab::check::Finding& finding : result.findings.list) {
    lines.insert(format.LineOf(finding));
  }
  std::string text = std::string(kHead) + "\n";
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace sabxml::cli
