#include "cli/settings/settings_file.h"

#include <filesystem>
#include <set>

#include "base/com_error.h"
#include "cli/host/automation.h"
#include "cli/standard_input.h"
#include "cli/suggestion.h"
#include "cli/trace.h"
#include "common/named_values.h"
#include "platform/file.h"
#include "xml/path.h"

namespace sabxml::cli {
namespace {

std::vector<std::string> StepsOfPath(std::string_view path) {
  std::vector<std::string> steps;
  while (!path.empty()) {
    const std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(step.size() + 1, path.size()));
    if (!step.empty()) steps.emplace_back(step);
  }
  return steps;
}

std::filesystem::path SystemPathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

// Deeper elements than people write hold no settings.
constexpr std::size_t kLongestPath = 1000;

void AddNodePaths(const sab::ConfigElement& element, const std::string& parent,
                  std::vector<std::string>& paths, std::set<std::string>& known) {
  sab::Text name;
  const std::string path = parent + "/" + sab::ToUtf8(element.ReadLocalName(name));
  const std::size_t place = paths.size();
  bool has_values = false;
  for (const sab::ConfigElement child : element.Children()) {
    if (sab::IsLeaf(child)) {
      has_values = true;
    } else if (path.size() < kLongestPath) {
      AddNodePaths(child, path, paths, known);
    }
  }
  if (has_values && known.insert(path).second) {
    paths.insert(paths.begin() + static_cast<std::ptrdiff_t>(place), path);
  }
}

std::vector<std::string> NodePathsIn(sab::ConfigDocument& document) {
  std::vector<std::string> paths;
  std::set<std::string> known;
  if (const sab::ConfigElement root = document.Root()) AddNodePaths(root, "", paths, known);
  return paths;
}

}  // namespace

SettingsFile::SettingsFile(std::string name, SettingsPurpose purpose, bool may_be_created)
    : name_(std::move(name)) {
  Trace("opens " + name_ + (purpose == SettingsPurpose::kChange ? " to change it" : "") +
        ": the settings file that is named");
  const sab::Text path = sab::FromUtf8(PathToRead(name_));
  const bool is_loaded =
      purpose == SettingsPurpose::kChange ? document_.LoadToChange(path) : document_.Load(path);
  if (is_loaded) return;
  is_new_ = document_.Failure().is_missing && may_be_created;
  if (!is_new_) {
    throw Failure(WithStandardInput(document_.Failure().Describe()), sab::kDocumentNotLoaded);
  }
}

std::vector<sab::ConfigElement> SettingsFile::Select(const std::string& path) {
  try {
    return document_.SelectElements(std::string_view(path));
  } catch (const sab::ComError& error) {
    throw Failure(WithStandardInput(error.what()), error.Code());
  }
}

void SettingsFile::Require(const std::string& node_path) {
  if (Has(node_path)) return;
  throw Failure(name_ + ": the node path " + node_path + " leads to no element" +
                DidYouMean(node_path, NodePathsIn(document_),
                           "\"settings set --create\" makes one where it is missing"));
}

std::optional<sab::AppendedElement> SettingsFile::Make(const std::string& node_path) {
  const std::vector<std::string> steps = StepsOfPath(node_path);
  if (steps.empty() || !sab::xml::IsChildSteps(node_path)) {
    throw Failure(node_path + ": --create makes elements of a path of names, /Settings/Display");
  }
  if (is_new_ && !document_.Root()) document_.Create(steps.front());
  std::string path = "/" + steps.front();
  if (!Has(path)) {
    sab::Text name;
    throw Failure(name_ + ": the document element is " +
                  sab::ToUtf8(document_.Root().ReadLocalName(name)) + ", so " + node_path +
                  " cannot be made in it");
  }
  // The pending elements of a document are not selected, so the way to each of them is kept.
  for (std::size_t i = 1; i < steps.size(); ++i) {
    const std::string parent = path;
    path += "/" + steps[i];
    if (made_.contains(path) || Has(path)) continue;
    const auto made_parent = made_.find(parent);
    made_.emplace(path, made_parent == made_.end() ? document_.Select(parent).Append(steps[i])
                                                   : made_parent->second.Append(steps[i]));
  }
  const auto made = made_.find(path);
  return made == made_.end() ? std::nullopt : std::optional(made->second);
}

void SettingsFile::WriteBackup() const {
  const std::string name = name_ + ".bak";
  std::string reason;
  const auto bytes = sab::ReadFileBytes(sab::FromUtf8(name_), reason);
  if (!bytes) throw Failure(name_ + ": " + reason);
  // Who may not read the file may not read its copy: an existing file keeps its permissions.
  std::error_code ignored;
  std::filesystem::copy_file(SystemPathOf(name_), SystemPathOf(name), ignored);
  sab::ReplaceFileBytes(sab::FromUtf8(name), *bytes);
}

void SettingsFile::Save(bool keeps_backup) {
  if (keeps_backup && !is_new_) WriteBackup();
  document_.Save(sab::FromUtf8(name_));
}

void RefuseLastSlash(const std::string& node_path) {
  if (node_path.size() > 1 && node_path.ends_with('/'))
    throw Failure("the node path " + node_path + " ends with a slash; leave it out");
}

std::vector<std::string> NodePathsOf(const std::string& file) {
  sab::ConfigDocument document;
  document.Load(sab::FromUtf8(file));
  return NodePathsIn(document);
}

}  // namespace sabxml::cli
