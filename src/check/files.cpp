#include "check/files.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>

#include "project/rule_words.h"
#include "text/distance.h"

namespace sab::check {
namespace {

using formats::Kind;
using project::File;
using project::FileIndex;
using project::kNoFile;
using project::Link;
using xml::kNoNode;
using xml::NodeIndex;

std::string About(Kind kind) {
  return project::WithArticle(formats::DocumentOfKind(kind).about) + " file";
}

// The path as on disk, relative to a folder, with the separators of the document.
std::string InStyleOf(std::string_view written, const std::string& found,
                      const std::filesystem::path& folder) {
  std::string path = project::TextOf(project::PathOf(found).lexically_relative(folder));
  if (path.empty()) return {};
  if (written.find('\\') != written.npos) std::ranges::replace(path, '/', '\\');
  // Only letters may differ: "..\ui\..\ui\a.xml" stays as it is.
  return path.size() == written.size() ? path : std::string();
}

void ReportCase(Reporter& reporter, FileIndex index, NodeIndex node, std::string_view written,
                const std::string& found, const std::filesystem::path& folder) {
  const File& file = reporter.GetProject().At(index);
  Words words{"the path " + Quoted(written) + " is not written as the file on disk, " + found};
  words.paths = {found};
  words.suggestion = InStyleOf(written, found, folder);
  if (!words.suggestion.empty()) words.fix = Fix{node, {}, words.suggestion};
  reporter.Add(Mistake::kFileNameCase, index, file.ValueSpan(node), std::move(words));
}

// The path to a file of the same folder that a path may mean, as the document would have it.
std::string NearPath(const Link& link, const std::filesystem::path& file_folder) {
  const std::filesystem::path wanted = project::PathOf(link.found.path);
  std::error_code unreadable;
  std::vector<std::string> names;
  const std::filesystem::path folder = wanted.parent_path();
  std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, unreadable);
  for (; !unreadable && entry != std::filesystem::directory_iterator();
       entry.increment(unreadable)) {
    names.push_back(project::TextOf(entry->path().filename()));
  }
  std::ranges::sort(names);
  const std::string name = project::TextOf(wanted.filename());
  const std::string_view nearest = text::FindNearest(name, {names.begin(), names.end()}).word;
  if (nearest.empty()) return {};
  const std::string on_disk = InStyleOf(link.path.text, link.found.path, file_folder);
  const std::string_view path = on_disk.empty() ? link.path.text : std::string_view(on_disk);
  return std::string(path.substr(0, path.find_last_of("/\\") + 1)) + std::string(nearest);
}

NodeIndex SectionOf(const xml::Document& xml, NodeIndex node) {
  while (xml.ParentOf(node) != xml.Root() && xml.ParentOf(node) != kNoNode) {
    node = xml.ParentOf(node);
  }
  return node;
}

void CheckRoot(Reporter& reporter, FileIndex index, const File& file) {
  const xml::Document& xml = file.Xml();
  const std::string name(xml.LocalNameOf(xml.Root()));
  const project::Span span = file.TagSpan(xml.Root());
  if (file.GetKind() == Kind::kNone) {
    reporter.Add(Mistake::kWrongDocumentElement, index, span,
                 {"the document element " + Tag(name) +
                  " is that of no known kind of file; name settings with --settings"});
    return;
  }
  const formats::Document& form = formats::DocumentOfKind(file.GetKind());
  if (name == form.root) return;
  Words words{"the document element of " + About(file.GetKind()) + " is " + Tag(form.root) +
              ", not " + Tag(name)};
  if (file.KindOfRoot() != Kind::kNone) words.message += ", which is " + About(file.KindOfRoot());
  words.suggestion = Tag(form.root);
  const std::vector<std::string_view> roots = [] {
    std::vector<std::string_view> all;
    for (const formats::Document* const known : formats::Documents()) {
      if (!known->root.empty()) all.push_back(known->root);
    }
    return all;
  }();
  const text::Nearest nearest = text::FindNearest(name, roots);
  if (nearest.is_only && nearest.word == form.root && nearest.word != name) {
    words.fix = Fix{xml.Root(), std::string(form.root), {}};
  }
  reporter.Add(Mistake::kWrongDocumentElement, index, span, std::move(words));
}

}  // namespace

void CheckDocuments(Reporter& reporter) {
  const project::Project& project = reporter.GetProject();
  for (FileIndex index = 0; index < project.FileCount(); ++index) {
    const File& file = project.At(index);
    if (file.Failure()) {
      const project::ReadFailure& failure = *file.Failure();
      if (failure.reason == project::ReadFailure::Reason::kUnreadable) continue;
      const bool is_encoding = failure.reason == project::ReadFailure::Reason::kEncoding;
      reporter.AddAt(is_encoding ? Mistake::kBadEncoding : Mistake::kNotWellFormed, index,
                     failure.place, {failure.message});
    } else if (file.HasElements() && !file.IsOfOtherKind() && file.GetKind() != Kind::kSettings) {
      CheckRoot(reporter, index, file);
    }
  }
}

void CheckLinks(Reporter& reporter) {
  const project::Project& project = reporter.GetProject();
  // By the section that names a file: an element of the document element.
  std::map<std::tuple<FileIndex, NodeIndex, FileIndex>, const Link*> known;
  for (const Link& link : project.Links()) {
    const File& file = project.At(link.from);
    const NodeIndex node = link.path.node;
    const project::Span span = file.ValueSpan(node);
    const std::filesystem::path folder = project::PathOf(file.Path()).parent_path();
    const bool is_absolute = project::IsAbsolute(link.path.text);
    if (link.to == kNoFile) {
      if (is_absolute || link.path.text.find("://") != link.path.text.npos) {
        continue;  // which is reported as such
      }
      Words words{"there is no file " + link.found.path};
      words.paths = {link.found.path};
      words.suggestion = NearPath(link, folder);
      reporter.Add(Mistake::kFileNotFound, link.from, span, std::move(words));
      continue;
    }
    const auto [first, is_new] =
        known.try_emplace({link.from, SectionOf(file.Xml(), node), link.to}, &link);
    if (!is_new) {
      Words words{"the file " + link.found.path + " is named twice"};
      words.paths = {link.found.path};
      words.related.push_back(
          {reporter.At(link.from, file.ValueSpan(first->second->path.node)), "the first time"});
      reporter.Add(Mistake::kSameFileTwice, link.from, span, std::move(words));
      continue;
    }
    const File& target = project.At(link.to);
    const bool is_unreadable =
        target.Failure() && target.Failure()->reason == project::ReadFailure::Reason::kUnreadable;
    if (is_unreadable) {
      Words words{"the file " + link.found.path + " cannot be read: " + target.Failure()->message};
      words.paths = {link.found.path};
      reporter.Add(Mistake::kFileNotFound, link.from, span, std::move(words));
    } else if (target.IsOfOtherKind()) {
      Words words{link.found.path + " is " + About(target.KindOfRoot()) + ", and " +
                  About(link.kind) + " is expected"};
      words.paths = {link.found.path};
      words.related.push_back(
          {reporter.At(link.to, target.TagSpan(target.Xml().Root())), "its document element"});
      reporter.Add(Mistake::kWrongDocumentElement, link.from, span, std::move(words));
    } else if (link.found.differs_in_case && !is_absolute) {
      ReportCase(reporter, link.from, node, link.path.text, link.found.path, folder);
    }
  }
}

void CheckResources(Reporter& reporter, FileIndex index, project::PathFinder& finder,
                    const std::vector<Resource>& resources) {
  const File& file = reporter.GetProject().At(index);
  const xml::Document& xml = file.Xml();
  // Folders of pictures that are given beside them, by their texts; none for those that no element
  // gives.
  struct Folder {
    std::string_view text;
    bool is_folder = false;
    std::string path;
  };
  std::unordered_map<std::string_view, Folder> folders{{{}, {}}};
  std::unordered_map<NodeIndex, const Folder*> folder_of_parent;
  const auto folder_of = [&](NodeIndex picture) -> const Folder& {
    const NodeIndex parent = xml.ParentOf(picture);
    const auto [known, is_new] = folder_of_parent.try_emplace(parent, &folders.at({}));
    if (!is_new) return *known->second;
    for (NodeIndex child = xml.FirstChildElement(parent); child != kNoNode;
         child = xml.NextElement(child)) {
      const formats::Rule* const rule = file.RuleOf(child);
      if (!rule || (rule->name != "ResourcePath" && rule->name != "ResPath")) continue;
      const std::string_view text = file.TextOf(child);
      if (text.empty()) continue;
      const auto [folder, is_new_text] = folders.try_emplace(text, Folder{text, false, {}});
      known->second = &folder->second;
      if (!is_new_text || project::IsAbsolute(text)) continue;  // that of another machine, perhaps
      folder->second.path = finder.Find(file.Path(), std::string(text)).path;
      std::error_code ignored;
      folder->second.is_folder =
          std::filesystem::is_directory(project::PathOf(folder->second.path), ignored);
    }
    return *known->second;
  };
  // The same picture is missing once in a file.
  std::set<std::pair<std::string_view, std::string_view>> told;
  for (const Resource& resource : resources) {
    const formats::Rule& rule = file.GetSchema().At(resource.rule);
    const std::string_view text = file.TextOf(resource.node);
    const bool is_picture = rule.type == formats::Type::kImage;
    const Folder& folder = is_picture ? folder_of(resource.node) : folders.at({});
    // A missing folder is one mistake, and a library of resources cannot be looked into.
    if (!folder.text.empty() && !folder.is_folder) continue;
    if (!told.emplace(folder.text, text).second) continue;
    const std::string wanted(text);
    std::string named_by = file.Path();
    project::PathFinder::Found found = finder.Find(named_by, wanted);
    if (!folder.text.empty()) {
      const std::string in_folder = folder.path + "/x";
      const project::PathFinder::Found other = finder.Find(in_folder, wanted);
      if (other.exists || !found.exists) {
        found = other;
        named_by = in_folder;
      }
    }
    if (found.exists) {
      if (found.differs_in_case) {
        ReportCase(reporter, index, resource.node, text, found.path,
                   project::PathOf(named_by).parent_path());
      }
      continue;
    }
    Words words{"there is no file " + found.path};
    words.paths = {found.path};
    const project::Span span = file.ValueSpan(resource.node);
    if (!is_picture) {
      reporter.Add(Mistake::kResourceNotFound, index, span, std::move(words));
    } else {
      const Severity severity = folder.text.empty() ? Severity::kInfo : Severity::kWarning;
      reporter.Add(Mistake::kImageNotFound, severity, index, span, std::move(words));
    }
  }
}

}  // namespace sab::check
