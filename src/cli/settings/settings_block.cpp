#include "cli/settings/settings_block.h"

#include <algorithm>

#include "base/com_error.h"
#include "cli/display_text.h"
#include "cli/host/automation.h"
#include "cli/settings/settings_value.h"
#include "cli/suggestion.h"
#include "common/named_values.h"
#include "text/ascii.h"
#include "text/distance.h"

namespace sabxml::cli {
namespace {

// Deeper levels than those that settings have are shown as one text.
constexpr int kMaxDepth = 8;

Json StructureAsJson(const sab::ConfigElement& element, int depth = 0) {
  sab::Text text;
  if (depth == kMaxDepth || sab::IsLeaf(element)) return sab::ToUtf8(element.ReadText(text));
  Json structure = Json::object();
  for (const sab::ConfigElement child : element.Children()) {
    Json value = StructureAsJson(child, depth + 1);
    Json& place = structure[sab::ToUtf8(child.ReadLocalName(text))];
    if (place.is_null()) {
      place = Json::array({std::move(value)});
    } else {
      place.push_back(std::move(value));
    }
  }
  for (Json& values : structure) {
    if (values.size() == 1) values = Json(values.front());
  }
  return structure;
}

void CheckName(const std::string& key) {
  sab::CheckElementName(key);  // raises ComError
}

// What is common to the names of all groups does not tell them apart.
std::size_t MostMisspeltLetters(std::string_view class_name) {
  for (const std::string_view end : {"CfgParser", "Parser"}) {
    if (!class_name.ends_with(end)) continue;
    class_name.remove_suffix(end.size());
    break;
  }
  if (class_name.starts_with("Ve")) class_name.remove_prefix(2);
  return sab::text::MostDifferences(class_name);
}

}  // namespace

SettingsChoice SettingsChoiceNamed(const std::string& class_name) {
  std::vector<std::string> names;
  for (SettingsChoice& choice : SettingsChoices()) {
    if (sab::EqualsIgnoringAsciiCase(choice.class_name, class_name)) return std::move(choice);
    names.push_back(std::move(choice.class_name));
  }
  throw Failure("there is no settings group " + class_name +
                DidYouMean(class_name, names, "\"sabxml settings list\" lists all of them",
                           MostMisspeltLetters(class_name)));
}

std::vector<SettingsChoice> SettingsChoices() {
  std::vector<SettingsChoice> choices;
  for (const sab::SettingsGroup& group : sab::SettingsGroups())
    choices.push_back({std::string(group.class_name), &group});
  for (const std::string_view name : sab::NamedValueClasses())
    choices.push_back({std::string(name), nullptr});
  return choices;
}

std::size_t BlockColonIn(std::string_view word) {
  const std::size_t colon = word.find(":/");
  return word.find('=') < colon ? word.npos : colon;
}

const sab::SettingsRow& RowNamed(const sab::SettingsGroup& group, const std::string& key) {
  const std::span<const sab::SettingsRow> rows = group.rows();
  for (const sab::SettingsRow& row : rows) {
    if (row.key == key) return row;
  }
  for (const sab::SettingsRow& row : rows) {
    if (sab::EqualsIgnoringAsciiCase(row.key, key)) return row;
  }
  for (const sab::SettingsRow& row : rows) {
    if (sab::EqualsIgnoringAsciiCase(row.property, key)) return row;
  }
  const std::string class_name(group.class_name);
  std::vector<std::string> names;
  for (const sab::SettingsRow& row : rows) names.emplace_back(row.key);
  throw Failure(class_name + " has no key " + key +
                DidYouMean(key, names,
                           "\"sabxml settings list " + class_name + "\" lists those that it has"));
}

// --- Entries ---

sab::Type SettingsEntry::Type() const {
  if (is_structure) return sab::Type::kNone;
  return row ? row->type : sab::Type::kText;
}

std::string SettingsEntry::Shown() const {
  if (!is_structure) return ShownSetting(Type(), value);
  return copies.empty() ? "" : ShownCopy(0);
}

Json SettingsEntry::AsJson() const {
  if (!is_structure) return SettingAsJson(Type(), value);
  return copies.empty() ? Json() : StructureAsJson(copies.front());
}

std::string SettingsEntry::ShownCopy(std::size_t index) const {
  sab::Text scratch;
  if (is_structure) return OnOneLine(StructureAsJson(copies[index]).dump());
  return OnOneLine(sab::ToUtf8(copies[index].ReadText(scratch)));
}

// --- Block ---

SettingsBlock::SettingsBlock(SettingsChoice group, std::shared_ptr<SettingsFile> file,
                             std::string node_path, bool may_be_created)
    : group_(std::move(group)), file_(std::move(file)), node_path_(std::move(node_path)) {
  RefuseLastSlash(node_path_);
  if (!may_be_created) file_->Require(node_path_);
  if (group_.table) values_ = group_.table->make_fields();
}

SettingsEntry SettingsBlock::EntryOf(const sab::SettingsRow& row) {
  SettingsEntry entry;
  entry.key = row.key;
  entry.row = &row;
  entry.copies = file_->Select(node_path_ + "/" + entry.key);
  entry.is_structure = row.type == sab::Type::kNone;
  if (entry.is_structure) return entry;
  sab::Text text = sab::FromUtf8(row.rule->when_missing);
  if (!entry.copies.empty()) entry.copies.front().ReadText(text);
  const bool is_loaded = row.IsLoaded() && !(entry.copies.empty() && text.empty());
  entry.value = is_loaded ? LoadedText(row, text) : row.format(values_.get());
  return entry;
}

sab::Text SettingsBlock::LoadedText(const sab::SettingsRow& row, sab::TextView text) {
  const sab::SettingsFields values = group_.table->make_fields();
  row.parse(values.get(), text);
  return LoadedSetting(row.type, row.format(values.get()), text);
}

SettingsEntry SettingsBlock::EntryNamed(const std::string& key) {
  if (group_.table) return EntryOf(RowNamed(*group_.table, key));
  CheckName(key);
  SettingsEntry missing;
  for (SettingsEntry& entry : Entries()) {
    if (entry.key != key) continue;
    if (!entry.is_structure) return entry;
    missing = std::move(entry);
  }
  missing.key = key;
  return missing;
}

std::vector<SettingsEntry> SettingsBlock::Entries() {
  std::vector<SettingsEntry> entries;
  if (group_.table) {
    for (const sab::SettingsRow& row : group_.table->rows()) entries.push_back(EntryOf(row));
    return entries;
  }
  sab::Text name;
  for (const sab::ConfigElement& element : file_->Select(node_path_ + "/*")) {
    const std::string key = sab::ToUtf8(element.ReadLocalName(name));
    const bool is_structure = !sab::IsLeaf(element);
    auto known = std::find_if(entries.begin(), entries.end(), [&](const SettingsEntry& entry) {
      return entry.key == key && entry.is_structure == is_structure;
    });
    if (known == entries.end()) {
      SettingsEntry entry;
      entry.key = key;
      entry.is_structure = is_structure;
      if (!is_structure) element.ReadText(entry.value);
      known = entries.insert(entries.end(), std::move(entry));
    }
    known->copies.push_back(element);
  }
  return entries;
}

void SettingsBlock::Set(SettingsEntry& entry, sab::TextView text) {
  if (entry.copies.empty()) {
    std::optional<sab::AppendedElement> made;
    if (!file_->Has(node_path_)) made = file_->Make(node_path_);
    if (made) {
      made->Append(entry.key, text);
    } else {
      file_->Document().Select(std::string_view(node_path_)).Append(entry.key, text);
    }
    return;
  }
  sab::Text old;
  if (entry.copies.front().ReadText(old) != text) entry.copies.front().SetText(text);
  KeepOnly(entry, 0);
}

void SettingsBlock::KeepOnly(SettingsEntry& entry, std::size_t index) {
  for (std::size_t i = 0; i < entry.copies.size(); ++i) {
    if (i != index) entry.copies[i].Remove();
  }
}

void SettingsBlock::RemoveAll(SettingsEntry& entry) { KeepOnly(entry, entry.copies.size()); }

std::size_t SettingsBlock::NewestCopy(const SettingsEntry& entry) {
  const std::string first_node = "(" + node_path_ + ")[1]/";
  std::size_t count = 0;
  if (entry.row) {
    count = file_->Select(first_node + entry.key).size();
  } else {
    sab::Text name;
    for (const sab::ConfigElement& element : file_->Select(first_node + "*")) {
      if (sab::ToUtf8(element.ReadLocalName(name)) == entry.key &&
          sab::IsLeaf(element) != entry.is_structure)
        ++count;
    }
  }
  return (count > 0 ? count : entry.copies.size()) - 1;
}

}  // namespace sabxml::cli
