#include "project/project.h"

#include <algorithm>

namespace sab::project {
namespace {

using formats::Kind;
using formats::Role;
using formats::Subject;

template <class List, class Element>
void AddOnce(List& list, const Element& element) {
  if (std::find(list.begin(), list.end(), element) == list.end()) list.push_back(element);
}

}  // namespace

Project::Project(const Source& source, ReadFile read) : source_(source), read_(std::move(read)) {
  if (read_) return;
  read_ = [this](const std::string& path, Kind kind) {
    return std::make_shared<const File>(path, kind, source_);
  };
}

FileIndex Project::Read(const std::string& path, Kind kind) { return ReadOnce(path, kind); }

FileIndex Project::ReadOnce(const std::string& path, Kind kind) {
  const std::string full = FullPathOf(path);
  for (auto known = known_.lower_bound({full, Kind::kNone});
       known != known_.end() && known->first.first == full; ++known) {
    // A file that is to be recognised is known as whatever it was read as.
    const bool is_recognised = kind == Kind::kNone && !files_[known->second]->IsOfOtherKind();
    if (known->first.second == kind || is_recognised) return known->second;
  }
  const FileIndex index = files_.size();
  const File& file = *files_.emplace_back(read_(path, kind));
  children_.emplace_back();
  known_[{full, kind}] = index;
  known_.try_emplace({full, file.GetKind()}, index);
  for (const Identifier& identifier : file.Identifiers()) {
    const formats::Rule& rule = file.GetSchema().At(identifier.rule);
    if (rule.role != Role::kLeadsTo || identifier.text.empty()) continue;
    Link& link = links_.emplace_back();
    link.from = index;
    link.path = identifier;
    link.kind = rule.leads_to;
    link.found = finder_.Find(path, std::string(identifier.text));
    link.found.exists = link.found.exists || source_.IsOpen(link.found.path);
    if (!link.found.exists) continue;
    const FileIndex to = ReadOnce(link.found.path, rule.leads_to);
    link.to = to;
    AddOnce(children_[index], to);
  }
  return index;
}

FileIndex Project::Find(const std::string& path) const {
  const std::string full = FullPathOf(path);
  const auto known = known_.lower_bound({full, Kind::kNone});
  return known != known_.end() && known->first.first == full ? known->second : kNoFile;
}

bool Project::Replace(FileIndex index, std::shared_ptr<const File> other) {
  std::vector<const Identifier*> paths;
  for (const Identifier& identifier : other->Identifiers()) {
    const formats::Rule& rule = other->GetSchema().At(identifier.rule);
    if (rule.role == Role::kLeadsTo && !identifier.text.empty()) paths.push_back(&identifier);
  }
  std::vector<Link*> links;
  for (Link& link : links_) {
    if (link.from == index) links.push_back(&link);
  }
  const auto is_same = [&](const Identifier* path, const Link* link) {
    return path->text == link->path.text &&
           other->GetSchema().At(path->rule).leads_to == link->kind;
  };
  if (files_[index]->GetKind() != other->GetKind() || !std::ranges::equal(paths, links, is_same)) {
    return false;
  }
  for (std::size_t i = 0; i < paths.size(); ++i) links[i]->path = *paths[i];
  files_[index] = std::move(other);
  return true;
}

std::vector<FileIndex> Project::Parents(FileIndex file) const {
  std::vector<FileIndex> parents;
  for (FileIndex i = 0; i < children_.size(); ++i) {
    if (std::ranges::find(children_[i], file) != children_[i].end()) parents.push_back(i);
  }
  return parents;
}

std::vector<FileIndex> Project::Below(FileIndex file, Kind kind) const {
  std::vector<FileIndex> reached{file};
  for (std::size_t i = 0; i < reached.size(); ++i) {
    for (const FileIndex child : children_[reached[i]]) AddOnce(reached, child);
  }
  std::ranges::sort(reached);
  std::erase_if(reached, [&](FileIndex index) { return files_[index]->GetKind() != kind; });
  return reached;
}

std::vector<FileIndex> Project::Above(FileIndex file, Kind kind) const {
  std::vector<FileIndex> reached{file};
  for (std::size_t i = 0; i < reached.size(); ++i) {
    for (const FileIndex parent : Parents(reached[i])) AddOnce(reached, parent);
  }
  std::ranges::sort(reached);
  std::erase_if(reached, [&](FileIndex index) { return files_[index]->GetKind() != kind; });
  return reached;
}

bool Project::IsIncomplete(FileIndex file) const {
  std::vector<FileIndex> reached{file};
  for (std::size_t i = 0; i < reached.size(); ++i) {
    const File& at = *files_[reached[i]];
    if (at.Failure() || at.IsOfOtherKind()) return true;
    for (const FileIndex child : children_[reached[i]]) AddOnce(reached, child);
  }
  return std::ranges::any_of(links_, [&](const Link& link) {
    return link.to == kNoFile && std::ranges::find(reached, link.from) != reached.end();
  });
}

std::vector<FileIndex> Project::DefiningFiles(FileIndex file, Subject subject) const {
  const auto below_all = [this](const std::vector<FileIndex>& files, Kind kind) {
    std::vector<FileIndex> defining;
    for (const FileIndex one : files) {
      for (const FileIndex found : Below(one, kind)) AddOnce(defining, found);
    }
    return defining;
  };
  switch (subject) {
    case Subject::kCommand:
      return below_all(Above(file, Kind::kEnvironment), Kind::kCommands);
    case Subject::kPanel:
      return Below(file, Kind::kUserInterface);
    case Subject::kEnvironment:
      return Below(file, Kind::kEnvironment);
    case Subject::kModule:
      return Below(file, Kind::kModule);
    case Subject::kTemplate:
      return below_all(Above(file, Kind::kApplication), Kind::kTemplate);
    default:
      return {file};
  }
}

std::vector<Occurrence> Project::Find(Role role, Subject subject, std::string_view text) const {
  std::vector<Occurrence> found;
  for (FileIndex i = 0; i < files_.size(); ++i) {
    for (const Identifier& identifier : files_[i]->Identifiers()) {
      const formats::Rule& rule = files_[i]->GetSchema().At(identifier.rule);
      if (rule.role == role && rule.subject == subject && identifier.text == text) {
        found.push_back({i, identifier});
      }
    }
  }
  return found;
}

std::vector<Occurrence> Project::Definitions(Subject subject, std::string_view text) const {
  return Find(Role::kDefines, subject, text);
}

std::vector<Occurrence> Project::References(Subject subject, std::string_view text) const {
  return Find(Role::kRefersTo, subject, text);
}

}  // namespace sab::project
