#include <algorithm>
#include <iostream>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/settings/settings_commands.h"
#include "cli/settings/settings_value.h"
#include "cli/suggestion.h"
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

Json KeyAsJson(const sab::SettingsRow& row, const void* fields) {
  Json key = {{"key", row.key},
              {"member", row.property},
              {"type", sab::WordsForSetting(row.type)},
              {"default", row.format ? SettingAsJson(row.type, row.format(fields)) : Json()},
              {"note", sab::NoteOf(row)},
              {"help", row.rule->help}};
  if (const auto numbers = NumbersOfSetting(row)) {
    key["minimum"] = numbers->least;
    key["maximum"] = numbers->most;
  }
  return key;
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
  for (const sab::SettingsRow& row : choice.table->rows())
    keys.push_back(KeyAsJson(row, fields.get()));
  group["keys"] = std::move(keys);
  return group;
}

std::string LineOf(const sab::ConfigElement& element) {
  const unsigned line = element.Position().line;
  return line == 0 ? "in the file" : "line " + std::to_string(line);
}

std::string PlaceOf(const SettingsEntry& entry) {
  if (entry.copies.empty()) return entry.is_structure ? "(not there)" : "default";
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

std::vector<NamedBlock> BlocksOf(const SettingsOptions& options) {
  std::vector<NamedBlock> blocks = {
      {SettingsChoiceNamed(options.class_name), options.node_path, {}}};
  for (const std::string& name : options.names) {
    const std::size_t colon = BlockColonIn(name);
    if (colon == name.npos) {
      blocks.back().names.push_back(name);
    } else {
      blocks.push_back({SettingsChoiceNamed(name.substr(0, colon)), name.substr(colon + 1), {}});
    }
  }
  return blocks;
}

void ListSettings(const SettingsOptions& options) {
  std::vector<SettingsChoice> groups;
  for (const std::string& name : options.names) groups.push_back(SettingsChoiceNamed(name));
  if (options.as_json) {
    Json all = Json::array();
    for (const SettingsChoice& group : groups.empty() ? SettingsChoices() : groups)
      all.push_back(GroupAsJson(group));
    return PrintJson(all);
  }
  if (groups.empty()) ListGroups();
  for (const SettingsChoice& group : groups) ListKeys(group);
}

void DescribeRanges(const SettingsOptions& options) {
  const SettingsChoice group = SettingsChoiceNamed(options.class_name);
  if (!group.table) throw Failure(group.class_name + " takes any key, and any text for it");
  std::vector<const sab::SettingsRow*> rows;
  for (const std::string& key : options.names) rows.push_back(&RowNamed(*group.table, key));
  if (rows.empty()) {
    for (const sab::SettingsRow& row : group.table->rows()) rows.push_back(&row);
  }
  const sab::SettingsFields fields = group.table->make_fields();
  Json all = Json::array();
  Columns columns;
  columns.Add({"KEY", "TYPE", "RANGE", "DEFAULT", "MEANING"});
  for (const sab::SettingsRow* const row : rows) {
    const std::string about = AboutKey(*row);
    columns.Add({std::string(row->key), sab::WordsForSetting(row->type), RangeOfSetting(*row),
                 DefaultOf(*row, fields.get()),
                 std::string(row->rule->help) + (about.empty() ? "" : " (" + about + ")")});
    all.push_back(KeyAsJson(*row, fields.get()));
  }
  if (options.as_json) return PrintJson(all);
  columns.Print(std::cout);
}

namespace {

// A key that the file does not have, with the value that is given for this case.
SettingsEntry WithDefault(SettingsEntry entry, const SettingsOptions& options) {
  if (!options.has_default || !entry.copies.empty()) return entry;
  entry.value = entry.row ? CheckedSetting(*entry.row, options.default_value)
                          : CheckedText(entry.key, options.default_value);
  return entry;
}

std::vector<SettingsEntry> EntriesOf(SettingsBlock& block, const NamedBlock& named,
                                     const SettingsOptions& options) {
  std::vector<SettingsEntry> entries;
  for (const std::string& key : named.names) {
    entries.push_back(WithDefault(block.EntryNamed(key), options));
    if (!entries.back().row && entries.back().copies.empty() && !options.has_default) {
      std::vector<std::string> names;
      for (const SettingsEntry& entry : block.Entries()) names.push_back(entry.key);
      throw Failure(
          block.FileName() + ": " + named.node_path + " has no key " + key +
          DidYouMean(key, names, "\"sabxml settings get\" without a key prints those that it has"));
    }
  }
  return named.names.empty() ? block.Entries() : entries;
}

// Says nothing: the exit code is 1 where a key is missing.
void TellWhetherSet(const SettingsOptions& options, const std::vector<NamedBlock>& blocks) {
  const auto file = std::make_shared<SettingsFile>(options.file, SettingsPurpose::kRead);
  bool has_all = true;
  for (const NamedBlock& named : blocks) {
    if (named.names.empty()) throw CLI::ValidationError("settings get", "name a KEY for --is-set");
    SettingsBlock block(named.group, file, named.node_path, true);
    for (const std::string& key : named.names) {
      has_all = !block.EntryNamed(key).copies.empty() && has_all;
    }
  }
  if (!has_all) throw CLI::RuntimeError(1);
}

}  // namespace

void GetSettings(const SettingsOptions& options) {
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  if (options.only_tells_whether_set) return TellWhetherSet(options, blocks);
  const auto file = std::make_shared<SettingsFile>(options.file, SettingsPurpose::kRead);
  Json all = Json::array();
  for (const NamedBlock& named : blocks) {
    if (options.has_default && named.names.empty())
      throw CLI::ValidationError("settings get", "name the KEY that --default is for");
    SettingsBlock block(named.group, file, named.node_path, options.has_default);
    Json values = Json::object();
    Columns columns;
    for (const SettingsEntry& entry : EntriesOf(block, named, options)) {
      if (entry.HasValue()) values[entry.key] = entry.AsJson();
      columns.Add({entry.key, entry.HasValue() ? entry.Shown() : "(not there)"});
    }
    if (options.as_json) {
      all.push_back({{"class", named.group.class_name},
                     {"node", named.node_path},
                     {"values", std::move(values)}});
      continue;
    }
    if (blocks.size() > 1) std::cout << named.Title() << '\n';
    columns.Print(std::cout);
  }
  if (!options.as_json) return;
  PrintJson(blocks.size() > 1 ? all : all.front()["values"]);
}

void DumpSettings(const SettingsOptions& options) {
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  const auto file = std::make_shared<SettingsFile>(options.file, SettingsPurpose::kRead);
  Json all = Json::array();
  for (const NamedBlock& named : blocks) {
    SettingsBlock block(named.group, file, named.node_path);
    Json values = Json::object();
    Columns columns;
    for (const SettingsEntry& entry : EntriesOf(block, named, options)) {
      values[entry.key] = EntryAsJson(entry);
      columns.Add({entry.key, entry.Shown(), sab::WordsForSetting(entry.Type()), PlaceOf(entry)});
    }
    if (options.as_json) {
      all.push_back({{"file", options.file},
                     {"node", named.node_path},
                     {"class", named.group.class_name},
                     {"values", std::move(values)}});
      continue;
    }
    if (blocks.size() > 1) std::cout << named.Title() << '\n';
    columns.Print(std::cout);
  }
  if (options.as_json) PrintJson(blocks.size() > 1 ? all : all.front());
}

void CompareSettings(const SettingsOptions& options) {
  const SettingsChoice group = SettingsChoiceNamed(options.class_name);
  const std::string& other_path =
      options.other_path.empty() ? options.node_path : options.other_path;
  SettingsBlock first(group, std::make_shared<SettingsFile>(options.file, SettingsPurpose::kRead),
                      options.node_path);
  SettingsBlock second(group,
                       std::make_shared<SettingsFile>(options.other_file, SettingsPurpose::kRead),
                       other_path);
  const std::vector<SettingsEntry> ours = first.Entries();
  const std::vector<SettingsEntry> theirs = second.Entries();
  Columns columns;
  Json differences = Json::array();
  const auto compare = [&](const SettingsEntry* a, const SettingsEntry* b) {
    const Json before = a ? a->AsJson() : Json();
    const Json after = b ? b->AsJson() : Json();
    if (a && b && before == after && a->value == b->value) return;
    std::string from = ShownSide(a);
    std::string to = ShownSide(b);
    if (from == to && a && b) {  // flags that are true by different numbers
      from = sab::ToUtf8(a->value);
      to = sab::ToUtf8(b->value);
    }
    columns.Add({a ? a->key : b->key, from, "-> " + to});
    differences.push_back({{"key", a ? a->key : b->key}, {"before", before}, {"after", after}});
  };
  for (const SettingsEntry& entry : ours) compare(&entry, Find(theirs, entry));
  for (const SettingsEntry& entry : theirs) {
    if (!Find(ours, entry)) compare(nullptr, &entry);
  }
  if (options.as_json) {
    PrintJson({{"class", group.class_name},
               {"files", {options.file, options.other_file}},
               {"nodes", {options.node_path, other_path}},
               {"differences", std::move(differences)}});
  } else {
    columns.Print(std::cout);
    if (columns.IsEmpty()) std::cout << "No differences.\n";
  }
  if (!columns.IsEmpty() && options.tells_by_exit_code) throw CLI::RuntimeError(1);
}

}  // namespace sabxml::cli
