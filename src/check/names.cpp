#include "check/names.h"

#include <algorithm>
#include <set>

#include "check/markup.h"
#include "project/rule_words.h"
#include "text/ascii.h"
#include "text/distance.h"
#include "text/utf.h"

namespace sab::check {
namespace {

using formats::Kind;
using formats::Role;
using formats::Subject;
using project::File;
using project::Identifier;
using project::Occurrence;

Mistake MistakeOf(Subject subject) {
  switch (subject) {
    case Subject::kPanel:
      return Mistake::kUndefinedPanel;
    case Subject::kMenu:
      return Mistake::kUndefinedMenu;
    case Subject::kToolbar:
    case Subject::kWindow:
      return Mistake::kUndefinedToolbar;
    case Subject::kEnvironment:
      return Mistake::kUndefinedEnvironment;
    case Subject::kModule:
      return Mistake::kUndefinedModule;
    case Subject::kTemplate:
      return Mistake::kUndefinedTemplate;
    default:
      return Mistake::kUndefinedCommand;
  }
}

// What two identifiers that people take for the same have in common: small letters of normal width
// without blanks.
std::string PlainName(std::string_view id) {
  std::string plain;
  for (std::size_t i = 0; i < id.size();) {
    const std::size_t size = std::max<std::size_t>(text::Utf8CharacterSize(id.substr(i)), 1);
    const std::string_view character = id.substr(i, size);
    i += size;
    // U+FF01 to U+FF5E are ! to ~ in full width.
    if (size == 3 && character[0] == '\xEF' && (character[1] == '\xBC' || character[1] == '\xBD')) {
      const int low = static_cast<unsigned char>(character[2]) - 0x80;
      const int code = (character[1] == '\xBC' ? 0 : 64) + low + 0x20;
      if (code > 0x20 && code < 0x7F) {
        plain += ToLowerAscii(static_cast<char>(code));
        continue;
      }
    }
    if (character == " " || character == "\t" || character == "\n" || character == "\r" ||
        character == "\xC2\xA0" || character == "\xE3\x80\x80") {
      continue;
    }
    plain += size == 1 ? std::string(1, ToLowerAscii(character[0])) : std::string(character);
  }
  return plain;
}

// What a suggestion may cost: names to look through for one, and comparisons for all.
constexpr std::size_t kMost = 5000;
constexpr std::size_t kMostComparisons = 5'000'000;
constexpr std::size_t kMostRelated = 10;

}  // namespace

Names::Names(Reporter& reporter, const HostIds& host_ids)
    : reporter_(reporter), project_(reporter.GetProject()), host_ids_(host_ids) {}

Related Names::PlaceOf(const Occurrence& occurrence, std::string message) const {
  const File& file = project_.At(occurrence.file);
  return {reporter_.At(occurrence.file, file.ValueSpan(occurrence.identifier.node)),
          std::move(message)};
}

std::string Names::ListOf(const Files& files) const {
  std::string list;
  for (const FileIndex file : files) {
    list += (list.empty() ? "" : ", ") + project_.At(file).Path();
  }
  return list;
}

Names::Index& Names::IndexOf(Subject subject, const Files& files) {
  std::unique_ptr<Index>& index = indexes_[{subject, files}];
  if (index) return *index;
  index = std::make_unique<Index>();
  for (const FileIndex at : files) {
    const File& file = project_.At(at);
    for (const Identifier& identifier : file.Identifiers()) {
      const formats::Rule& rule = file.GetSchema().At(identifier.rule);
      if (rule.role != Role::kDefines || identifier.text.empty()) continue;
      if (!formats::IsSameSubject(rule.subject, subject)) continue;
      index->table.Add(NameTable::HashOf(identifier.text),
                       static_cast<std::uint32_t>(index->definitions.size()),
                       [&](std::uint32_t number) {
                         return index->definitions[number].identifier.text == identifier.text;
                       });
      index->definitions.push_back({at, identifier});
    }
  }
  return *index;
}

void Names::CheckReferences() {
  for (FileIndex file = 0; file < project_.FileCount(); ++file) {
    if (project_.At(file).HasSchema()) CheckFile(file);
  }
}

void Names::CheckFile(FileIndex index) {
  const File& file = project_.At(index);
  std::map<Subject, References> by_subject;
  References* of_subject[static_cast<std::size_t>(Subject::kStandard) + 1] = {};
  for (const Identifier& identifier : file.Identifiers()) {
    const formats::Rule& rule = file.GetSchema().At(identifier.rule);
    if (rule.role != Role::kRefersTo || identifier.text.empty()) continue;
    auto*& list = of_subject[static_cast<std::size_t>(rule.subject)];
    if (!list) list = &by_subject[rule.subject];
    list->push_back(&identifier);
  }
  for (const auto& [subject, references] : by_subject) {
    if (subject == Subject::kCommand) {
      CheckCommands(index, references);
      continue;
    }
    const Files files = project_.DefiningFiles(index, subject);
    const std::string what(formats::NameOf(subject));
    if (files.empty()) {
      reporter_.Note(file.Path() + ": " + Counted(references.size(), what + " name") +
                     " not checked, because no file that defines " + project::WithArticle(what) +
                     " is known");
      continue;
    }
    Index& known = IndexOf(subject, files);
    std::string broken = BrokenOf(FilesBetween(index, subject));
    UsesByName undefined;
    for (const Identifier* const reference : references) {
      if (known.Has(reference->text) || host_ids_.Has(subject, reference->text)) continue;
      undefined.Add(reference);
    }
    ReportUndefined(index, undefined, subject, known, broken);
  }
}

// The files that must be read as they are meant before something in a file can be called undefined.
Names::Files Names::FilesBetween(FileIndex index, Subject subject) const {
  Files files{index};
  const auto add = [&](FileIndex from, std::initializer_list<Kind> kinds) {
    for (const Kind kind : kinds) {
      for (const FileIndex file : project_.Below(from, kind)) files.push_back(file);
    }
  };
  switch (subject) {
    case Subject::kEnvironment:
      add(index, {Kind::kModule, Kind::kEnvironment});
      break;
    case Subject::kModule:
      add(index, {Kind::kModule});
      break;
    case Subject::kPanel:
      add(index, {Kind::kUserInterface});
      break;
    case Subject::kTemplate:
      for (const FileIndex application : project_.Above(index, Kind::kApplication)) {
        add(application, {Kind::kApplication, Kind::kTemplate});
      }
      break;
    case Subject::kCommand:
      add(index, {Kind::kCommands});
      break;
    default:
      break;
  }
  return files;
}

// The first of them that may lack definitions.
std::string Names::BrokenOf(const Files& files) {
  for (const FileIndex file : files) {
    const auto [known, is_new] = broken_.try_emplace(file);
    if (is_new) {
      known->second = reporter_.MayLackDefinitions(file) || project_.At(file).HasUnknownParts();
    }
    if (known->second) return project_.At(file).Path();
  }
  return {};
}

void Names::NoteUnchecked(FileIndex file, Subject subject, std::string_view id,
                          const std::string& broken) {
  reporter_.Note(project_.At(file).Path() + ": the " + std::string(formats::NameOf(subject)) + " " +
                 Quoted(id) + " is not checked, because " + broken + " has a mistake of its own");
}

// A user interface may be that of several environments, and a command that one of them lacks is
// dead there.
void Names::CheckCommands(FileIndex index, const References& references) {
  const File& file = project_.At(index);
  const Files environments = project_.Above(index, Kind::kEnvironment);
  const std::string head =
      file.Path() + ": " + Counted(references.size(), "command name") + " not checked, because ";
  if (environments.empty()) {
    reporter_.Note(head + "no environment is known that uses this file");
    return;
  }
  Files all;
  for (FileIndex i = 0; i < project_.FileCount(); ++i) {
    if (project_.At(i).GetKind() == Kind::kCommands) all.push_back(i);
  }
  if (all.empty()) {
    reporter_.Note(head + "no command file is read");
    return;
  }
  Index& everywhere = IndexOf(Subject::kCommand, all);
  Files defining;
  for (FileIndex i = 0; i < project_.FileCount(); ++i) {
    if (project_.At(i).GetKind() != Kind::kUserInterface) defining.push_back(i);
  }
  const std::string unread = BrokenOf(defining);
  std::vector<std::pair<FileIndex, const Index*>> own;
  for (const FileIndex environment : environments) {
    const Files commands = project_.Below(environment, Kind::kCommands);
    if (commands.empty() || !BrokenOf(FilesBetween(environment, Subject::kCommand)).empty())
      continue;
    own.emplace_back(environment, &IndexOf(Subject::kCommand, commands));
  }
  UsesByName undefined;
  std::set<std::string_view> told;
  for (const Identifier* const at : references) {
    const Identifier& reference = *at;
    if (everywhere.Has(reference.text)) {
      Files lacking;
      for (const auto& [environment, known] : own) {
        if (!known->Has(reference.text)) lacking.push_back(environment);
      }
      if (lacking.empty() || host_ids_.Has(Subject::kCommand, reference.text)) continue;
      if (!told.insert(reference.text).second) continue;
      Words words{"the command " + Quoted(reference.text) + " is not among those of " +
                  ListOf(lacking)};
      for (const FileIndex environment : lacking) {
        words.paths.push_back(project_.At(environment).Path());
      }
      reporter_.Add(Mistake::kCommandNotInEnvironment, index, file.ValueSpan(reference.node),
                    std::move(words));
      continue;
    }
    if (!host_ids_.Has(Subject::kCommand, reference.text)) undefined.Add(at);
  }
  ReportUndefined(index, undefined, Subject::kCommand, everywhere, unread);
}

void Names::ReportUndefined(FileIndex index, const UsesByName& undefined, Subject subject,
                            Index& known, const std::string& broken) {
  for (const References& all : undefined.All()) {
    const References uses = WithoutSuppressed(index, all, subject);
    if (IsDamaged(project_.At(index), uses.front()->node, uses.front()->text)) continue;
    if (broken.empty()) {
      ReportUndefined(index, uses, subject, known);
    } else {
      NoteUnchecked(index, subject, uses.front()->text, broken);
    }
  }
}

// A comment before one use of a name says nothing of the others.
Names::References Names::WithoutSuppressed(FileIndex index, const References& uses,
                                           Subject subject) {
  if (uses.size() < 2) return uses;
  const auto [known, is_new] = suppressed_.try_emplace(index);
  if (is_new) known->second = SuppressedIn(project_.At(index), nullptr);
  References left;
  for (const Identifier* const use : uses) {
    const std::size_t offset = project_.At(index).ValueSpan(use->node).from;
    const bool is_suppressed = std::ranges::any_of(known->second, [&](const Suppressed& part) {
      return part.Covers(offset, MistakeOf(subject)) || part.Covers(offset, Mistake::kNearMissId);
    });
    if (!is_suppressed) left.push_back(use);
  }
  return left.empty() ? uses : left;
}

void Names::ReportUndefined(FileIndex index, const References& uses, Subject subject,
                            Index& known) {
  const File& file = project_.At(index);
  const Identifier& reference = *uses.front();
  const project::Span span = file.ValueSpan(reference.node);
  const std::string what = "the " + std::string(formats::NameOf(subject)) + " ";
  if (!known.has_plain_names) {
    known.has_plain_names = true;
    for (std::uint32_t i = 0; i < known.definitions.size(); ++i) {
      const std::string_view text = known.definitions[i].identifier.text;
      const auto [name, is_new] =
          known.by_plain_name.emplace(PlainName(text), Index::NearName{i, true});
      if (!is_new && known.definitions[name->second.definition].identifier.text != text) {
        name->second.is_only = false;
      }
      if (known.names.size() < kMost) known.names.push_back(text);
    }
    for (const std::string_view id : host_ids_.Known(subject)) {
      known.of_host.emplace(PlainName(id), id);
      known.names.push_back(id);
    }
  }
  Words words;
  const auto closest = known.by_plain_name.find(PlainName(reference.text));
  if (closest != known.by_plain_name.end()) {
    const Occurrence& definition = known.definitions[closest->second.definition];
    words.message = what + Quoted(reference.text) + " is defined as " +
                    Quoted(definition.identifier.text) + ": every letter counts";
    words.suggestion = definition.identifier.text;
    words.related.push_back(PlaceOf(definition, "the definition"));
    if (closest->second.is_only && !known.of_host.contains(closest->first) &&
        EqualsIgnoringAsciiCase(reference.text, definition.identifier.text)) {
      words.fix = Fix{reference.node, {}, words.suggestion};
      for (const Identifier* const use : std::span(uses).subspan(1))
        words.fix->others.push_back(use->node);
    }
    reporter_.Add(Mistake::kNearMissId, index, span, std::move(words));
    return;
  }
  if (const auto host = known.of_host.find(PlainName(reference.text));
      host != known.of_host.end()) {
    words.message = what + Quoted(reference.text) + " is " + Quoted(host->second) +
                    " among those of the host: every letter counts";
    words.suggestion = host->second;
    reporter_.Add(Mistake::kNearMissId, index, span, std::move(words));
    return;
  }
  words.message = what + Quoted(reference.text) + " is not defined";
  // Identifiers have much in common, so less may differ than in words.
  // Where so many are missing, it is not their spelling.
  if (comparisons_ < kMostComparisons) {
    comparisons_ += known.names.size();
    const std::size_t most = std::clamp<std::size_t>(reference.text.size() / 5, 1, 4);
    words.suggestion = text::FindNearest(reference.text, known.names, most).word;
  }
  for (std::size_t i = 1; i < std::min(uses.size(), kMostRelated + 1); ++i) {
    words.related.push_back(PlaceOf({index, *uses[i]}, "also used here"));
  }
  reporter_.Add(MistakeOf(subject), index, span, std::move(words));
}

}  // namespace sab::check
