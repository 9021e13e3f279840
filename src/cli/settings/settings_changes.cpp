#include "cli/settings/settings_changes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/host/automation.h"
#include "cli/settings/settings_value.h"
#include "cli/standard_input.h"
#include "common/named_values.h"

namespace sabxml::cli {
namespace {

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

std::string CopyWithLine(const SettingsEntry& entry, std::size_t index) {
  const std::string text = entry.ShownCopy(index);
  const unsigned line = entry.copies[index].Position().line;
  const std::string shown = text.empty() ? "(empty)" : text;
  return line == 0 ? shown : shown + " (line " + std::to_string(line) + ")";
}

}  // namespace

SettingsChanges::SettingsChanges(const SettingsOptions& options, SettingsPurpose purpose)
    : options_(options) {
  RequireFile(options);
  file_ = std::make_shared<SettingsFile>(
      options.file, options.is_dry ? SettingsPurpose::kRead : purpose, options.may_create);
}

void SettingsChanges::RequireFile(const SettingsOptions& options) {
  if (options.file == kStandardInput)
    throw CLI::ValidationError("settings", "the standard input cannot be changed; name a file");
}

SettingsBlock& SettingsChanges::Block(const SettingsChoice& group, const std::string& node_path) {
  std::unique_ptr<SettingsBlock>& block = blocks_[group.class_name + ":" + node_path];
  if (!block) {
    block = std::make_unique<SettingsBlock>(group, file_, node_path, options_.may_create);
  }
  return *block;
}

void SettingsChanges::Add(Change change) {
  // Two values for one key cannot both be meant.
  for (const Change& known : changes_) {
    if (known.entry.key != change.entry.key || known.block->NodePath() != change.block->NodePath())
      continue;
    if (known.text == change.text) return;  // a block that two groups read
    throw CLI::ValidationError("settings", "the key " + change.entry.key + " is named twice");
  }
  changes_.push_back(std::move(change));
}

void SettingsChanges::Set(SettingsBlock& block, const std::string& key, const std::string& value) {
  SettingsEntry entry = block.EntryNamed(key);
  try {
    sab::Text text = CheckedValue(entry, value);
    SetText(block, std::move(entry), std::move(text), value);
  } catch (const Failure& failure) {
    // The place of the key, where it has one.
    sab::LoadFailure place{block.FileName(), {}, failure.what()};
    if (!entry.copies.empty()) place.position = entry.copies.front().Position();
    throw Failure(place.Describe());
  }
}

void SettingsChanges::SetText(SettingsBlock& block, SettingsEntry entry, sab::Text text,
                              const std::string& given) {
  Add({&block, std::move(entry), std::move(text), given, {}});
}

void SettingsChanges::Unset(SettingsBlock& block, const std::string& key) {
  Add({&block, block.EntryNamed(key), {}, {}, {}});
}

void SettingsChanges::KeepOnly(SettingsBlock& block, SettingsEntry entry, std::size_t kept) {
  changes_.push_back({&block, std::move(entry), {}, {}, kept});
}

bool SettingsChanges::Change::IsMade() const {
  if (!text) return entry.copies.empty();
  return entry.copies.size() == 1 && IsText(entry.copies.front(), *text);
}

void SettingsChanges::Change::Make() {
  if (kept) return SettingsBlock::KeepOnly(entry, *kept);
  if (text) return block->Set(entry, *text);
  SettingsBlock::RemoveAll(entry);
}

Json SettingsChanges::Change::AsJson() const {
  Json json = {
      {"class", block->Group().class_name}, {"node", block->NodePath()}, {"key", entry.key}};
  json["is_changed"] = !IsMade();
  json["before"] = entry.copies.empty() ? Json() : entry.AsJson();
  sab::Text own;
  if (kept) {
    json["after"] = SettingAsJson(entry.Type(), entry.copies[*kept].ReadText(own));
  } else {
    json["after"] = text ? SettingAsJson(entry.Type(), *text) : Json();
  }
  const std::size_t stays = text || kept ? 1 : 0;
  json["removed_copies"] = entry.copies.size() - std::min(stays, entry.copies.size());
  return json;
}

std::vector<std::string> SettingsChanges::Change::AsCells() const {
  const std::size_t further = entry.copies.empty() ? 0 : entry.copies.size() - 1;
  if (!text) {
    if (entry.copies.empty()) return {entry.key, "(not there)"};
    return {entry.key, ShownOld(entry), "removed", RemovedCopies(further)};
  }
  const std::string value = ShownSetting(entry.Type(), *text);
  const std::string shown = value.empty() ? "(empty)" : value;
  if (IsMade()) return {entry.key, shown, "as before"};
  const std::string old = ShownOld(entry);
  // A flag may be true by another number; copies may go while the value stays.
  const bool is_other_text = old == shown && !IsText(entry.copies.front(), *text);
  return {entry.key, is_other_text ? entry.ShownCopy(0) : old,
          "-> " + (is_other_text ? ToUtf8(*text) : shown), RemovedCopies(further)};
}

void SettingsChanges::Report(bool is_changed) const {
  if (options_.as_json) {
    Json all = Json::array();
    for (const Change& change : changes_) all.push_back(change.AsJson());
    PrintJson({{"file", options_.file},
               {"is_changed", is_changed && !options_.is_dry},
               {"is_dry_run", options_.is_dry},
               {"changes", std::move(all)}});
    return;
  }
  Columns columns;
  std::size_t copies = 0;
  std::size_t keys = 0;
  const SettingsBlock* shown = nullptr;
  for (const Change& change : changes_) {
    if (blocks_.size() > 1 && change.block != shown) {
      columns.Print(std::cout);
      columns = {};
      std::cout << change.block->Group().class_name << ':' << change.block->NodePath() << '\n';
      shown = change.block;
    }
    if (!change.kept) {
      columns.Add(change.AsCells());
      continue;
    }
    const SettingsEntry& entry = change.entry;
    std::cout << entry.key << ": " << CopyWithLine(entry, *change.kept) << " stays, removed:";
    for (std::size_t i = 0, count = 0; i < entry.copies.size(); ++i) {
      if (i != *change.kept) {
        std::cout << (count++ == 0 ? " " : ", ") << CopyWithLine(entry, i);
      }
    }
    std::cout << '\n';
    ++keys;
    copies += entry.copies.size() - 1;
  }
  columns.Print(std::cout);
  if (keys > 0) {
    std::cout << copies << (copies == 1 ? " copy of " : " copies of ") << keys
              << (keys == 1 ? " key\n" : " keys\n");
  }
  if (!is_changed) {
    std::cout << "Nothing was to be changed.\n";
  } else if (options_.is_dry) {
    std::cout << "Nothing was changed: this was a dry run.\n";
  }
}

void SettingsChanges::WarnOfLosses() const {
  for (const Change& change : changes_) {
    const SettingsEntry& entry = change.entry;
    if (!change.text) continue;
    const bool is_decimal = entry.Type() == sab::Type::kFloat || entry.Type() == sab::Type::kDouble;
    const std::string written = sab::ToUtf8(*change.text);
    if (is_decimal && !change.given.empty() && !IsSameDecimal(change.given, written)) {
      Warn(entry.key + "=" + change.given + " loses digits: it is written as " + written);
    }
    if (entry.row && !entry.row->IsLoaded()) {
      Warn("hosts save " + entry.key + " and do not load it: it has no effect on them");
    }
  }
}

void SettingsChanges::Finish() {
  const bool is_changed = std::any_of(changes_.begin(), changes_.end(),
                                      [](const Change& change) { return !change.IsMade(); });
  if (is_changed && !options_.is_dry) {
    // What is reported is the file before the changes, so they are made on the document only.
    for (Change& change : changes_) {
      if (!change.IsMade()) change.Make();
    }
    file_->Save(options_.keeps_backup);
  }
  Report(is_changed);
  WarnOfLosses();
}

}  // namespace sabxml::cli
