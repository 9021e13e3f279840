#include "cli/settings/settings_block.h"

#include <algorithm>
#include <filesystem>

#include "base/com_error.h"
#include "cli/display_text.h"
#include "cli/host/automation.h"
#include "cli/settings/settings_value.h"
#include "cli/standard_input.h"
#include "cli/suggestion.h"
#include "common/named_values.h"
#include "platform/file.h"
#include "text/ascii.h"

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

}  // namespace

SettingsChoice SettingsChoiceNamed(const std::string& class_name) {
  for (const sab::SettingsGroup& group : sab::SettingsGroups()) {
    if (sab::EqualsIgnoringAsciiCase(group.class_name, class_name))
      return {std::string(group.class_name), &group};
  }
  for (const std::string_view name : sab::NamedValueClasses()) {
    if (sab::EqualsIgnoringAsciiCase(name, class_name)) return {std::string(name), nullptr};
  }
  std::vector<std::string> names;
  for (const sab::SettingsGroup& group : sab::SettingsGroups())
    names.emplace_back(group.class_name);
  for (const std::string_view name : sab::NamedValueClasses()) names.emplace_back(name);
  throw Failure("there is no settings group " + class_name + DidYouMean(class_name, names) +
                "; \"sabxml settings list\" lists all of them");
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
  throw Failure(class_name + " has no key " + key + DidYouMean(key, names) +
                "; \"sabxml settings list " + class_name + "\" lists those that it has");
}

void OpenSettings(sab::ConfigDocument& document, const std::string& file,
                  const std::string& node_path, SettingsPurpose purpose) {
  const sab::Text name = sab::FromUtf8(PathToRead(file));
  const bool is_loaded =
      purpose == SettingsPurpose::kChange ? document.LoadToChange(name) : document.Load(name);
  if (!is_loaded) {
    throw Failure(WithStandardInput(document.Failure().Describe()), sab::kDocumentNotLoaded);
  }
  try {
    if (document.Select(sab::FromUtf8(node_path))) return;
  } catch (const sab::ComError& error) {
    throw Failure(WithStandardInput(error.what()), error.Code());
  }
  throw Failure(file + ": the node path " + node_path +
                " leads to no element: see to its spelling and letter case, or add the element");
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

SettingsBlock::SettingsBlock(SettingsChoice group, std::string file, std::string node_path,
                             SettingsPurpose purpose)
    : group_(std::move(group)), file_(std::move(file)), node_path_(std::move(node_path)) {
  OpenSettings(document_, file_, node_path_, purpose);
  if (group_.table) values_ = group_.table->make_fields();
}

std::vector<sab::ConfigElement> SettingsBlock::Select(const std::string& path) {
  return document_.SelectElements(sab::FromUtf8(path));
}

SettingsEntry SettingsBlock::EntryOf(const sab::SettingsRow& row) {
  SettingsEntry entry;
  entry.key = row.key;
  entry.row = &row;
  entry.copies = Select(node_path_ + "/" + entry.key);
  entry.is_structure = row.type == sab::Type::kNone;
  if (entry.is_structure) return entry;
  sab::Text text = sab::FromUtf8(row.rule->when_missing);
  if (!entry.copies.empty()) entry.copies.front().ReadText(text);
  const bool is_loaded = row.IsLoaded() && !(entry.copies.empty() && text.empty());
  if (is_loaded) row.parse(values_.get(), text);
  entry.value = row.format(values_.get());
  if (is_loaded) entry.value = LoadedSetting(row.type, entry.value, text);
  return entry;
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
  for (const sab::ConfigElement& element : Select(node_path_ + "/*")) {
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
    document_.Select(sab::FromUtf8(node_path_)).Append(entry.key, text);
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
    count = Select(first_node + entry.key).size();
  } else {
    sab::Text name;
    for (const sab::ConfigElement& element : Select(first_node + "*")) {
      if (sab::ToUtf8(element.ReadLocalName(name)) == entry.key &&
          sab::IsLeaf(element) != entry.is_structure)
        ++count;
    }
  }
  return (count > 0 ? count : entry.copies.size()) - 1;
}

void SettingsBlock::WriteBackup() const {
  const std::string name = file_ + ".bak";
  std::string reason;
  const auto bytes = sab::ReadFileBytes(sab::FromUtf8(file_), reason);
  if (!bytes) throw Failure(file_ + ": " + reason);
  // Who may not read the file may not read its copy: an existing file keeps its permissions.
  const auto path_of = [](const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
  };
  std::error_code ignored;
  std::filesystem::copy_file(path_of(file_), path_of(name), ignored);
  sab::ReplaceFileBytes(sab::FromUtf8(name), *bytes);
}

void SettingsBlock::Save(bool keeps_backup) {
  if (keeps_backup) WriteBackup();
  document_.Save(sab::FromUtf8(file_));
}

}  // namespace sabxml::cli
