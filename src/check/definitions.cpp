#include <algorithm>
#include <set>

#include "check/names.h"

namespace sab::check {

using formats::Kind;
using formats::Role;
using formats::Scope;
using formats::Subject;
using project::File;
using project::Identifier;

void Names::CheckDefinitions() {
  for (const Finding& finding : reporter_.All()) {
    if (finding.mistake == Mistake::kDuplicateSection) {
      lost_sections_.emplace(finding.file, finding.offset);
    }
  }
  Files all;
  for (FileIndex file = 0; file < project_.FileCount(); ++file) {
    all.push_back(file);
    if (project_.At(file).HasSchema()) CheckDuplicates({file}, {Scope::kFile, Scope::kParent});
  }
  if (all.size() > 1) CheckDuplicates(all, {Scope::kProject});
  std::set<Files> known;
  for (const FileIndex file : all) {
    const Kind kind = project_.At(file).GetKind();
    const bool is_alone = kind == Kind::kCommands && project_.Parents(file).empty();
    if (kind != Kind::kEnvironment && !is_alone) continue;
    const Files commands = project_.Below(file, Kind::kCommands);
    if (known.insert(commands).second) CheckDuplicates(commands, {Scope::kEnvironment});
  }
}

void Names::CheckDuplicates(const Files& files, std::initializer_list<Scope> scopes) {
  struct Definition {
    FileIndex file;
    const Identifier* identifier;
    std::uint64_t key;
  };
  NameTable table;
  std::vector<Definition> definitions;
  for (const FileIndex index : files) {
    const File& file = project_.At(index);
    for (const Identifier& identifier : file.Identifiers()) {
      const formats::Rule& rule = file.GetSchema().At(identifier.rule);
      if (rule.role != Role::kDefines || identifier.text.empty()) continue;
      const Scope scope = formats::ScopeOf(rule.subject);
      if (std::ranges::find(scopes, scope) == scopes.end()) continue;
      auto key = static_cast<std::uint64_t>(rule.subject);
      if (scope == Scope::kParent) {
        const xml::NodeIndex owner = file.Xml().ParentOf(identifier.node);
        key += std::uint64_t{file.Xml().ParentOf(owner)} << 8;
      }
      const std::uint32_t other =
          table.Add(NameTable::HashOf(identifier.text, key),
                    static_cast<std::uint32_t>(definitions.size()), [&](std::uint32_t number) {
                      return definitions[number].key == key &&
                             definitions[number].identifier->text == identifier.text;
                    });
      definitions.push_back({index, &identifier, key});
      if (other == NameTable::kNone) continue;
      const Definition& first = definitions[other];
      // The same text twice in one element is a duplicate value.
      if (first.file == index &&
          file.Xml().ParentOf(first.identifier->node) == file.Xml().ParentOf(identifier.node)) {
        continue;
      }
      if (IsInLostSection(index, identifier.node)) continue;
      const std::string what(formats::NameOf(rule.subject));
      Words words{"the " + what + " " + Quoted(identifier.text) + " is defined twice"};
      words.related.push_back(PlaceOf({first.file, *first.identifier}, "the first one"));
      reporter_.Add(
          rule.subject == Subject::kSymbol ? Mistake::kStandardSymbolId : Mistake::kDuplicateId,
          index, file.ValueSpan(identifier.node), std::move(words));
    }
  }
}

// Whether an identifier is in a section of which the server reads another one.
bool Names::IsInLostSection(FileIndex index, xml::NodeIndex node) const {
  if (lost_sections_.empty()) return false;
  const File& file = project_.At(index);
  while (node != xml::kNoNode && !lost_sections_.contains({index, file.TagSpan(node).from})) {
    node = file.Xml().ParentOf(node);
  }
  return node != xml::kNoNode;
}

}  // namespace sab::check
