#include "lsp/identifiers.h"

#include <algorithm>

#include "lsp/syntax.h"

namespace sab::lsp {

using formats::Role;
using formats::Subject;
using project::File;
using project::FileIndex;
using project::Identifier;
using project::Occurrence;
using xml::kNoNode;
using xml::NodeIndex;

std::optional<Named> IdentifierAt(const View& view, std::size_t offset) {
  if (!view.file->HasSchema()) return std::nullopt;
  const NodeIndex element = ElementAt(*view.file, offset);
  const formats::Rule* const rule = element == kNoNode ? nullptr : view.file->RuleOf(element);
  if (!rule || (rule->role != Role::kDefines && rule->role != Role::kRefersTo)) return std::nullopt;
  const project::Span span = view.file->ValueSpan(element);
  const std::string_view text = view.file->TextOf(element);
  if (text.empty() || !Contains(span, offset)) return std::nullopt;
  return Named{rule->subject, std::string(text), span, element, rule->role == Role::kDefines};
}

namespace {

// The files that an identifier of a file belongs to, by the scope of its subject.
std::vector<FileIndex> FilesOf(const View& view, Subject subject) {
  const formats::Scope scope = formats::ScopeOf(subject);
  // Panels and menus are named by environments, too.
  const bool is_of_file = (scope == formats::Scope::kFile || scope == formats::Scope::kParent) &&
                          subject != Subject::kPanel;
  if (is_of_file) return {view.index};
  std::vector<FileIndex> files(view.project->FileCount());
  for (FileIndex i = 0; i < files.size(); ++i) files[i] = i;
  if (subject != Subject::kPanel) return files;
  // Those of one user interface, and the environments that show it.
  std::vector<FileIndex> own;
  for (const FileIndex user_interface :
       view.project->Below(view.index, formats::Kind::kUserInterface)) {
    own.push_back(user_interface);
    for (const FileIndex parent :
         view.project->Above(user_interface, formats::Kind::kEnvironment)) {
      own.push_back(parent);
    }
  }
  std::ranges::sort(own);
  own.erase(std::unique(own.begin(), own.end()), own.end());
  return own;
}

std::vector<Occurrence> Occurrences(const View& view, const Named& named, Role role) {
  std::vector<Occurrence> found;
  for (const FileIndex index : FilesOf(view, named.subject)) {
    const File& file = view.project->At(index);
    for (const Identifier& identifier : file.Identifiers()) {
      if (identifier.text != named.text) continue;
      const formats::Rule& rule = file.GetSchema().At(identifier.rule);
      if (rule.role != role || !IsSameSubject(rule.subject, named.subject)) continue;
      const bool is_of_parent = formats::ScopeOf(named.subject) == formats::Scope::kParent;
      const xml::Document& xml = file.Xml();
      const auto scope = [&xml](NodeIndex node) { return xml.ParentOf(xml.ParentOf(node)); };
      if (is_of_parent && scope(identifier.node) != scope(named.node)) continue;
      found.push_back({index, identifier});
    }
  }
  return found;
}

}  // namespace

std::vector<Occurrence> DefinitionsOf(const View& view, const Named& named) {
  return Occurrences(view, named, Role::kDefines);
}

std::vector<Occurrence> ReferencesOf(const View& view, const Named& named) {
  return Occurrences(view, named, Role::kRefersTo);
}

std::vector<Occurrence> DefinitionsFor(const View& view, Subject subject) {
  std::vector<FileIndex> files = view.project->DefiningFiles(view.index, subject);
  if (files.empty()) {
    files.resize(view.project->FileCount());
    for (FileIndex i = 0; i < files.size(); ++i) files[i] = i;
  }
  std::vector<Occurrence> found;
  for (const FileIndex index : files) {
    const File& file = view.project->At(index);
    for (const Identifier& identifier : file.Identifiers()) {
      const formats::Rule& rule = file.GetSchema().At(identifier.rule);
      if (rule.role == Role::kDefines && !identifier.text.empty() &&
          IsSameSubject(rule.subject, subject)) {
        found.push_back({index, identifier});
      }
    }
  }
  return found;
}

std::string_view CommandNameOf(const View& view, const Occurrence& definition) {
  const File& file = view.project->At(definition.file);
  return file.TextOf(file.Xml().ParentOf(definition.identifier.node), "LocalName");
}

namespace {

// The keys that user interfaces give a command: "Ctrl: true, Key: S".
std::string KeysOf(const View& view, std::string_view command) {
  std::string keys;
  for (FileIndex i = 0; i < view.project->FileCount(); ++i) {
    const File& file = view.project->At(i);
    if (file.GetKind() != formats::Kind::kUserInterface) continue;
    const xml::Document* const xml = file.HasElements() ? &file.Xml() : nullptr;
    for (const Identifier& identifier : file.Identifiers()) {
      if (identifier.text != command) continue;
      const NodeIndex around = xml->ParentOf(identifier.node);
      const auto add = [&](NodeIndex accelerator) {
        const std::string_view key = file.TextOf(accelerator, "Key");
        const std::string_view control = file.TextOf(accelerator, "Ctrl");
        if (key.empty()) return;
        const std::string words =
            (control.empty() ? "" : "Ctrl (" + std::string(control) + ") ") + std::string(key);
        if (keys.find(words) == keys.npos) keys += (keys.empty() ? "" : ", ") + words;
      };
      if (xml->HasLocalName(around, "Accel")) add(around);
      if (!xml->HasLocalName(around, "CommandUI")) continue;
      for (NodeIndex child = xml->FirstChildElement(around); child != kNoNode;
           child = xml->NextElement(child)) {
        if (xml->HasLocalName(child, "Accel")) add(child);
      }
    }
  }
  return keys;
}

}  // namespace

std::string CommandWords(const View& view, const Occurrence& definition) {
  const File& file = view.project->At(definition.file);
  const NodeIndex command = file.Xml().ParentOf(definition.identifier.node);
  std::string words = "**" + std::string(definition.identifier.text) +
                      "**: " + std::string(formats::NameOf(Subject::kCommand));
  const auto add = [&words](std::string_view name, std::string_view text) {
    if (!text.empty()) words += "\n- " + std::string(name) + ": " + std::string(text);
  };
  words += '\n';
  add("name", file.TextOf(command, "LocalName"));
  add("class", file.TextOf(command, "CLSID"));
  add("keys", KeysOf(view, definition.identifier.text));
  const xml::Place place = file.PlaceOf(file.ValueSpan(definition.identifier.node).from);
  add("defined", file.Path() + ":" + std::to_string(place.line));
  return words;
}

}  // namespace sab::lsp
