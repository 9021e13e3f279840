#include <iostream>
#include <set>
#include <sstream>

#include "cli/commands.h"
#include "cli/settings/settings_commands.h"
#include "cli/settings/settings_value.h"
#include "cli/standard_input.h"
#include "common/named_values.h"

namespace sabxml::cli {
namespace {

SettingsBlock ChangeableBlockOf(const SettingsOptions& options) {
  if (options.file == kStandardInput)
    throw CLI::ValidationError("settings", "the standard input cannot be changed; name a file");
  return {SettingsChoiceNamed(options.class_name), options.file, options.node_path,
          options.is_dry ? SettingsPurpose::kRead : SettingsPurpose::kChange};
}

// Writes, and only then says what was written.
void Finish(SettingsBlock& block, const SettingsOptions& options, bool is_changed,
            const std::string& report) {
  if (is_changed && !options.is_dry) block.Save(options.keeps_backup);
  std::cout << report;
  if (!is_changed) {
    std::cout << "Nothing was to be changed.\n";
  } else if (options.is_dry) {
    std::cout << "Nothing was changed: this was a dry run.\n";
  }
}

std::string TextOf(const Columns& columns) {
  std::ostringstream text;
  columns.Print(text);
  return text.str();
}

struct Assignment {
  std::string key;
  std::string value;
};

std::vector<Assignment> AssignmentsOf(const std::vector<std::string>& arguments) {
  std::vector<Assignment> assignments;
  for (const std::string& argument : arguments) {
    const std::size_t sign = argument.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw CLI::ValidationError("settings set", "write KEY=VALUE instead of \"" + argument + "\"");
    }
    assignments.push_back({argument.substr(0, sign), argument.substr(sign + 1)});
  }
  return assignments;
}

// Two values for one key cannot both be meant.
class SeenKeys {
 public:
  void Add(const SettingsEntry& entry) {
    if (!keys_.insert(entry.key).second)
      throw CLI::ValidationError("settings", "the key " + entry.key + " is named twice");
  }

 private:
  std::set<std::string> keys_;
};

std::string ShownOld(const SettingsEntry& entry) {
  const bool is_loaded = !entry.row || entry.row->IsLoaded();
  const std::string value = is_loaded || entry.copies.empty() ? entry.Shown() : entry.ShownCopy(0);
  if (!entry.copies.empty()) return value.empty() ? "(empty)" : value;
  if (!entry.row) return "(not there)";
  return value.empty() ? "(default)" : value + " (default)";
}

std::string RemovedCopies(std::size_t count) {
  if (count == 0) return "";
  return count == 1 ? "1 further copy is removed"
                    : std::to_string(count) + " further copies are removed";
}

bool IsText(const sab::ConfigElement& element, sab::TextView text) {
  sab::Text own;
  return sab::IsLeaf(element) && element.ReadText(own) == text;
}

sab::Text CheckedValue(const SettingsEntry& entry, const std::string& value) {
  if (entry.row) return CheckedSetting(*entry.row, value);
  if (!entry.is_structure) return CheckedText(entry.key, value);
  throw Failure(entry.key + "=" + value +
                " is refused: the element has elements of its own, which can be shown and not set; "
                "give its path as NODEPATH to set one of them. Nothing was changed.");
}

// The same; a refusal names the place of the key, where there is one.
sab::Text CheckedValue(const SettingsBlock& block, const SettingsEntry& entry,
                       const std::string& value) {
  try {
    return CheckedValue(entry, value);
  } catch (const Failure& failure) {
    sab::LoadFailure place{block.File(), {}, failure.what()};
    if (!entry.copies.empty()) place.position = entry.copies.front().Position();
    throw Failure(place.Describe());
  }
}

std::string CopyWithLine(const SettingsEntry& entry, std::size_t index) {
  const std::string text = entry.ShownCopy(index);
  const unsigned line = entry.copies[index].Position().line;
  const std::string shown = text.empty() ? "(empty)" : text;
  return line == 0 ? shown : shown + " (line " + std::to_string(line) + ")";
}

}  // namespace

void SetSettings(const SettingsOptions& options) {
  struct Change {
    SettingsEntry entry;
    sab::Text text;
    std::string given;
  };
  const std::vector<Assignment> assignments = AssignmentsOf(options.names);
  SettingsBlock block = ChangeableBlockOf(options);
  std::vector<Change> changes;
  SeenKeys seen;
  for (const Assignment& assignment : assignments) {
    SettingsEntry entry = block.EntryNamed(assignment.key);
    seen.Add(entry);
    sab::Text text = CheckedValue(block, entry, assignment.value);
    changes.push_back({std::move(entry), std::move(text), assignment.value});
  }

  Columns columns;
  bool is_changed = false;
  for (auto& [entry, text, given] : changes) {
    const std::string value = ShownSetting(entry.Type(), text);
    const std::string shown = value.empty() ? "(empty)" : value;
    if (entry.copies.size() == 1 && IsText(entry.copies.front(), text)) {
      columns.Add({entry.key, shown, "as before"});
      continue;
    }
    const std::size_t further = entry.copies.empty() ? 0 : entry.copies.size() - 1;
    columns.Add({entry.key, ShownOld(entry), "-> " + shown, RemovedCopies(further)});
    block.Set(entry, text);
    is_changed = true;
  }
  Finish(block, options, is_changed, TextOf(columns));
  for (const auto& [entry, text, given] : changes) {
    const bool is_decimal = entry.Type() == sab::Type::kFloat || entry.Type() == sab::Type::kDouble;
    const std::string written = sab::ToUtf8(text);
    if (is_decimal && !IsSameDecimal(given, written)) {
      Warn(entry.key + "=" + given + " loses digits: it is written as " + written);
    }
    if (entry.row && !entry.row->IsLoaded()) {
      Warn("hosts save " + entry.key + " and do not load it: it has no effect on them");
    }
  }
}

void UnsetSettings(const SettingsOptions& options) {
  SettingsBlock block = ChangeableBlockOf(options);
  std::vector<SettingsEntry> entries;
  SeenKeys seen;
  for (const std::string& key : options.names) {
    entries.push_back(block.EntryNamed(key));
    seen.Add(entries.back());
  }
  Columns columns;
  bool is_changed = false;
  for (SettingsEntry& entry : entries) {
    if (entry.copies.empty()) {
      columns.Add({entry.key, "(not there)"});
      continue;
    }
    columns.Add({entry.key, ShownOld(entry), "removed", RemovedCopies(entry.copies.size() - 1)});
    SettingsBlock::RemoveAll(entry);
    is_changed = true;
  }
  Finish(block, options, is_changed, TextOf(columns));
}

void CompactSettings(const SettingsOptions& options) {
  SettingsBlock block = ChangeableBlockOf(options);
  std::ostringstream report;
  std::size_t keys = 0;
  std::size_t copies = 0;
  for (SettingsEntry& entry : block.Entries()) {
    if (entry.copies.size() < 2) continue;
    const std::size_t kept = options.keeps_newest ? block.NewestCopy(entry) : 0;
    report << entry.key << ": " << CopyWithLine(entry, kept) << " stays, removed:";
    for (std::size_t i = 0, shown = 0; i < entry.copies.size(); ++i) {
      if (i != kept) report << (shown++ == 0 ? " " : ", ") << CopyWithLine(entry, i);
    }
    report << '\n';
    ++keys;
    copies += entry.copies.size() - 1;
    SettingsBlock::KeepOnly(entry, kept);
  }
  report << copies << (copies == 1 ? " copy of " : " copies of ") << keys
         << (keys == 1 ? " key\n" : " keys\n");
  Finish(block, options, copies > 0, report.str());
}

}  // namespace sabxml::cli
