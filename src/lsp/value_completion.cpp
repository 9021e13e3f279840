#include <algorithm>
#include <filesystem>
#include <set>

#include "lsp/completion_place.h"
#include "lsp/identifiers.h"
#include "lsp/syntax.h"
#include "project/path_finder.h"
#include "text/ascii.h"

namespace sab::lsp {
namespace {

using formats::Role;
using formats::Rule;
using formats::Type;

enum ItemKind { kValueItem = 12, kFileItem = 17, kReferenceItem = 18, kFolderItem = 19 };

Json ValueItem(std::string_view label, ItemKind kind, const Range& range) {
  return {{"label", label},
          {"kind", static_cast<int>(kind)},
          {"filterText", label},
          {"textEdit", {{"range", ToJson(range)}, {"newText", Escaped(label)}}}};
}

struct Choice {
  std::string_view text;
  std::string_view meaning;
};

std::vector<Choice> ChoicesFor(Type type) {
  switch (type) {
    case Type::kOne:
      return {{"1", "true"}, {"0", "false"}};
    case Type::kNotZero:
      return {{"0", "false"}, {"1", "true"}};
    case Type::kOneOrTrue:
      return {{"true", "true"}, {"false", "false"}, {"1", "true"}, {"0", "false"}};
    case Type::kTrue:
      return {{"true", "true"}, {"false", "false"}};
    case Type::kFlag:
    case Type::kMinusOne:
      return {{"-1", "true"}, {"0", "false"}};
    case Type::kNonZero:
      return {{"1", "true"}, {"0", "false"}};
    case Type::kInt32OrMax:
      return {{"INT_MAX", "the greatest number"}};
    default:
      return {};
  }
}

void AddIdentifiers(const View& view, const Rule& rule, const Range& range, Json& items) {
  std::set<std::string_view> known;
  for (const project::Occurrence& definition : DefinitionsFor(view, rule.subject)) {
    if (!known.insert(definition.identifier.text).second) continue;
    Json item = ValueItem(definition.identifier.text, kReferenceItem, range);
    if (rule.subject == formats::Subject::kCommand) {
      const std::string_view name = CommandNameOf(view, definition);
      if (!name.empty()) item["detail"] = name;
    } else {
      const project::File& file = view.project->At(definition.file);
      const std::string_view name =
          file.TextOf(file.Xml().ParentOf(definition.identifier.node), "Text");
      if (!name.empty()) item["detail"] = name;
    }
    items.push_back(std::move(item));
  }
  for (const std::string& id : view.application->Choices().host_ids.Of(rule.subject)) {
    if (known.contains(id)) continue;
    Json item = ValueItem(id, kReferenceItem, range);
    item["detail"] = "of the host";
    items.push_back(std::move(item));
  }
}

// What is in the folder that the typed path names so far.
void AddFiles(const View& view, const Rule& rule, std::string_view typed, const Range& range,
              Json& items) {
  constexpr std::size_t kMost = 1000;
  const bool has_slashes = typed.find('/') != typed.npos;
  const std::size_t end = typed.find_last_of("/\\");
  const std::string folder(typed.substr(0, end == typed.npos ? 0 : end + 1));
  std::string plain = folder;
  std::ranges::replace(plain, '\\', '/');
  const std::filesystem::path base =
      project::IsAbsolute(plain)
          ? project::PathOf(plain)
          : project::PathOf(view.file->Path()).parent_path() / project::PathOf(plain);
  const bool needs_document = rule.role == Role::kLeadsTo;
  std::vector<std::pair<std::string, bool>> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(base, error);
  for (; !error && entry != std::filesystem::directory_iterator() && names.size() < kMost;
       entry.increment(error)) {
    const std::string name = project::TextOf(entry->path().filename());
    std::error_code ignored;
    const bool is_folder = entry->is_directory(ignored);
    if (name.starts_with('.')) continue;
    const std::string ending = project::TextOf(entry->path().extension());
    if (needs_document && !is_folder && !EqualsIgnoringAsciiCase(ending, ".xml")) continue;
    names.emplace_back(name, is_folder);
  }
  std::ranges::sort(names);
  names.emplace_back("..", true);
  for (const auto& [name, is_folder] : names) {
    const std::string separator = is_folder ? (has_slashes ? "/" : "\\") : "";
    Json item = ValueItem(folder + name + separator, is_folder ? kFolderItem : kFileItem, range);
    item["sortText"] = (is_folder ? "1" : "0") + name;
    items.push_back(std::move(item));
  }
}

}  // namespace

void AddValues(const View& view, const Rule& rule, std::string_view typed, const Range& range,
               Json& items) {
  if (rule.role == Role::kRefersTo) return AddIdentifiers(view, rule, range, items);
  if (rule.type == Type::kPath || rule.type == Type::kImage) {
    return AddFiles(view, rule, typed, range, items);
  }
  for (const Choice& choice : ChoicesFor(rule.type)) {
    Json item = ValueItem(choice.text, kValueItem, range);
    item["detail"] = choice.meaning;
    item["sortText"] = std::to_string(items.size());
    items.push_back(std::move(item));
  }
}

}  // namespace sab::lsp
