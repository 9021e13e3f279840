#include <algorithm>
#include <iostream>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/settings/settings_commands.h"
#include "cli/settings/settings_value.h"
#include "settings/settings_manual.h"

namespace sabxml::cli {
namespace {

std::string DefaultOf(const sab::SettingsRow& row, const void* fields) {
  return row.format ? ShownSetting(row.type, row.format(fields)) : "";
}

std::string AboutKey(const sab::SettingsRow& row) {
  std::string about = sab::NoteOf(row);
  if (row.property != row.key) {
    about += (about.empty() ? "member " : "; member ") + std::string(row.property);
  }
  return about;
}

void ListGroups() {
  Columns columns;
  for (const sab::SettingsGroup& group : sab::SettingsGroups()) {
    columns.Add({std::string(group.class_name), std::to_string(group.rows().size()) + " keys",
                 std::string(group.about)});
  }
  for (const std::string_view name : sab::NamedValueClasses())
    columns.Add({std::string(name), "any key", "named values, all of them text"});
  columns.Print(std::cout);
}

void ListKeys(const SettingsChoice& choice) {
  if (!choice.table) {
    std::cout << choice.class_name << ": named values, all of them text; any key\n";
    return;
  }
  std::cout << choice.class_name << ": " << choice.table->about << '\n';
  Columns columns;
  columns.Add({"KEY", "TYPE", "DEFAULT", ""});
  const sab::SettingsFields fields = choice.table->make_fields();
  for (const sab::SettingsRow& row : choice.table->rows()) {
    columns.Add({std::string(row.key), sab::WordsForSetting(row.type), DefaultOf(row, fields.get()),
                 AboutKey(row)});
  }
  columns.Print(std::cout, "  ");
}

Json GroupAsJson(const SettingsChoice& choice) {
  Json group = {{"class", choice.class_name}};
  if (!choice.table) {
    group["any_key"] = true;
    return group;
  }
  group["about"] = choice.table->about;
  Json keys = Json::array();
  const sab::SettingsFields fields = choice.table->make_fields();
  for (const sab::SettingsRow& row : choice.table->rows()) {
    const Json value = row.format ? SettingAsJson(row.type, row.format(fields.get())) : Json();
    keys.push_back({{"key", row.key},
                    {"member", row.property},
                    {"type", sab::WordsForSetting(row.type)},
                    {"default", value},
                    {"note", sab::NoteOf(row)}});
  }
  group["keys"] = std::move(keys);
  return group;
}

SettingsBlock BlockOf(const SettingsOptions& options) {
  return {SettingsChoiceNamed(options.class_name), options.file, options.node_path};
}

std::string LineOf(const sab::ConfigElement& element) {
  const unsigned line = element.Position().line;
  return line == 0 ? "in the file" : "line " + std::to_string(line);
}

std::string PlaceOf(const SettingsEntry& entry) {
  if (entry.copies.empty()) return "default";
  const std::size_t further = entry.copies.size() - 1;
  std::string place = LineOf(entry.copies.front());
  if (entry.row && !entry.row->IsLoaded()) place += ", which no load takes";
  if (further == 1) place += ", and 1 further copy";
  if (further > 1) place += ", and " + std::to_string(further) + " further copies";
  return place;
}

Json EntryAsJson(const SettingsEntry& entry) {
  Json copies = Json::array();
  sab::Text text;
  for (const sab::ConfigElement& copy : entry.copies) {
    Json place = {{"text", sab::ToUtf8(copy.ReadText(text))}};
    if (const unsigned line = copy.Position().line; line != 0) place["line"] = line;
    copies.push_back(std::move(place));
  }
  return {{"type", sab::WordsForSetting(entry.Type())},
          {"value", entry.AsJson()},
          {"copies", std::move(copies)}};
}

// The key of one entry among those of the other side.
const SettingsEntry* Find(const std::vector<SettingsEntry>& entries, const SettingsEntry& wanted) {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&wanted](const SettingsEntry& entry) {
        return entry.key == wanted.key && entry.is_structure == wanted.is_structure;
      });
  return found == entries.end() ? nullptr : &*found;
}

std::string ShownSide(const SettingsEntry* entry) {
  if (!entry || (entry->copies.empty() && entry->is_structure)) return "(not there)";
  const std::string value = entry->Shown();
  if (entry->copies.empty()) return value.empty() ? "(default)" : value + " (default)";
  return value.empty() ? "(empty)" : value;
}

}  // namespace

void Columns::Print(std::ostream& out, std::string_view indentation) const {
  std::vector<std::size_t> widths;
  for (const auto& line : lines_) {
    widths.resize(std::max(widths.size(), line.size()));
    // A column in which something is long would push the rest out of sight.
    for (std::size_t i = 0; i < line.size(); ++i)
      widths[i] = std::max(widths[i], std::min<std::size_t>(WidthOf(line[i]), 40));
  }
  for (const auto& line : lines_) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) text += Padded(line[i], widths[i]) + "  ";
    text.erase(text.find_last_not_of(' ') + 1);
    out << indentation << text << '\n';
  }
}

void ListSettings(const SettingsOptions& options) {
  std::vector<SettingsChoice> groups;
  for (const std::string& name : options.names) groups.push_back(SettingsChoiceNamed(name));
  if (options.as_json) {
    if (groups.empty()) {
      for (const sab::SettingsGroup& group : sab::SettingsGroups())
        groups.push_back({std::string(group.class_name), &group});
      for (const std::string_view name : sab::NamedValueClasses())
        groups.push_back({std::string(name), nullptr});
    }
    Json all = Json::array();
    for (const SettingsChoice& group : groups) all.push_back(GroupAsJson(group));
    std::cout << all.dump(2) << '\n';
    return;
  }
  if (groups.empty()) ListGroups();
  for (const SettingsChoice& group : groups) ListKeys(group);
}

void GetSettings(const SettingsOptions& options) {
  SettingsBlock block = BlockOf(options);
  std::vector<SettingsEntry> entries;
  for (const std::string& key : options.names) {
    entries.push_back(block.EntryNamed(key));
    if (!entries.back().row && entries.back().copies.empty()) {
      throw Failure(options.file + ": " + options.node_path + " has no key " + key +
                    "; \"sabxml settings get\" without a key prints those that it has");
    }
  }
  if (options.names.empty()) entries = block.Entries();
  if (options.as_json) {
    Json values = Json::object();
    for (const SettingsEntry& entry : entries) values[entry.key] = entry.AsJson();
    std::cout << values.dump(2) << '\n';
    return;
  }
  Columns columns;
  for (const SettingsEntry& entry : entries) columns.Add({entry.key, entry.Shown()});
  columns.Print(std::cout);
}

void DumpSettings(const SettingsOptions& options) {
  SettingsBlock block = BlockOf(options);
  const std::vector<SettingsEntry> entries = block.Entries();
  if (options.as_json) {
    Json values = Json::object();
    for (const SettingsEntry& entry : entries) values[entry.key] = EntryAsJson(entry);
    const Json dump = {{"file", options.file},
                       {"node", options.node_path},
                       {"class", block.Group().class_name},
                       {"values", std::move(values)}};
    std::cout << dump.dump(2) << '\n';
    return;
  }
  Columns columns;
  for (const SettingsEntry& entry : entries) {
    columns.Add({entry.key, entry.Shown(), sab::WordsForSetting(entry.Type()), PlaceOf(entry)});
  }
  columns.Print(std::cout);
}

void CompareSettings(const SettingsOptions& options) {
  SettingsBlock first = BlockOf(options);
  SettingsBlock second(first.Group(), options.other_file,
                       options.other_path.empty() ? options.node_path : options.other_path);
  const std::vector<SettingsEntry> ours = first.Entries();
  const std::vector<SettingsEntry> theirs = second.Entries();
  Columns columns;
  const auto compare = [&columns](const SettingsEntry* a, const SettingsEntry* b) {
    if (a && b && a->AsJson() == b->AsJson()) return;
    columns.Add({a ? a->key : b->key, ShownSide(a), "-> " + ShownSide(b)});
  };
  for (const SettingsEntry& entry : ours) compare(&entry, Find(theirs, entry));
  for (const SettingsEntry& entry : theirs) {
    if (!Find(ours, entry)) compare(nullptr, &entry);
  }
  columns.Print(std::cout);
  if (columns.IsEmpty()) std::cout << "No differences.\n";
  if (!columns.IsEmpty() && options.tells_by_exit_code) throw CLI::RuntimeError(1);
}

}  // namespace sabxml::cli
