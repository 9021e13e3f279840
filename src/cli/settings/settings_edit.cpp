// Editing the values of a block as lines KEY=VALUE in the editor of the user.

#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>

#include "base/com_error.h"
#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/platform.h"
#include "cli/settings/settings_changes.h"
#include "cli/settings/settings_value.h"
#include "platform/file.h"
#include "settings/settings_manual.h"

namespace sabxml::cli {
namespace {

using Values = std::map<std::string, std::string>;  // of the keys that have lines

// One line; a text that a line cannot show, and one in quotes, is written as JSON has it.
std::string ValueInLine(const SettingsEntry& entry) {
  sab::Text scratch;
  const std::string text = ToUtf8(entry.copies.front().ReadText(scratch));
  if (entry.Type() == sab::Type::kText && (OnOneLine(text) != text || text.starts_with('"')))
    return Json(text).dump();
  return ShownSetting(entry.Type(), entry.copies.front().ReadText(scratch));
}

std::string CommentOf(const SettingsEntry& entry) {
  if (!entry.row) return "text";
  std::string comment = sab::WordsForSetting(entry.Type());
  const std::string range = RangeOfSetting(*entry.row);
  if (!range.empty()) comment += ", " + range;
  return comment + ": " + std::string(entry.row->rule->help);
}

std::string TextToEdit(SettingsBlock& block, Values& values) {
  std::string text = "# " + block.Group().class_name + " at " + block.NodePath() + " of " +
                     OnOneLine(block.FileName()) +
                     "\n# A line KEY=VALUE sets a key. One that is removed or has a # before it\n"
                     "# removes the key, so that a load finds its default.\n";
  for (const SettingsEntry& entry : block.Entries()) {
    if (entry.is_structure) continue;
    text += "\n# " + CommentOf(entry) + "\n";
    if (entry.copies.empty()) {
      text += "#" + entry.key + "=" + entry.Shown() + "\n";
      continue;
    }
    values[entry.key] = ValueInLine(entry);
    text += entry.key + "=" + values[entry.key] + "\n";
  }
  return text;
}

Values ValuesOf(const std::string& text) {
  Values values;
  std::istringstream lines(text);
  unsigned number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (line.ends_with('\r')) line.pop_back();
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == line.npos || line[first] == '#') continue;
    const std::size_t sign = line.find('=');
    const std::string place = "line " + std::to_string(number) + ": ";
    if (sign == line.npos || sign == first)
      throw Failure(place + "write KEY=VALUE, or a # before what is no value");
    const std::string key = line.substr(first, line.find_last_not_of(" \t", sign - 1) + 1 - first);
    if (!values.emplace(key, line.substr(sign + 1)).second)
      throw Failure(place + key + " has two lines; leave one");
  }
  return values;
}

std::string GivenText(const std::string& key, const std::string& value) {
  if (!value.starts_with('"')) return value;
  try {
    return Json::parse(value).get<std::string>();
  } catch (const Json::exception&) {
    throw Failure(key + "=" + value + " is refused: a text in quotes is written as in JSON");
  }
}

// Adds what differs from the values that were shown.
void AddChanges(SettingsChanges& changes, SettingsBlock& block, const Values& shown,
                const Values& wanted) {
  const auto check_unchanged = [&](const std::string& key) {
    const SettingsEntry entry = block.EntryNamed(key);
    const auto old = shown.find(entry.key);
    const bool is_same = entry.copies.empty()
                             ? old == shown.end()
                             : old != shown.end() && old->second == ValueInLine(entry);
    if (!is_same)
      throw Failure(entry.key + " was changed in the file meanwhile; edit again to see how");
  };
  for (const auto& [key, value] : wanted) {
    const auto old = shown.find(key);
    if (old != shown.end() && old->second == value) continue;
    check_unchanged(key);
    changes.Set(block, key, GivenText(key, value));
  }
  for (const auto& [key, value] : shown) {
    if (wanted.contains(key)) continue;
    check_unchanged(key);
    changes.Unset(block, key);
  }
}

bool WantsToEditAgain(const Failure& failure) {
  ReportFailure(failure);
  if (!InputIsTerminal()) return false;
  std::cerr << "Edit again? [Y/n] " << std::flush;
  std::string answer;
  return std::getline(std::cin, answer) && !answer.starts_with('n') && !answer.starts_with('N');
}

}  // namespace

void EditSettings(const SettingsOptions& options) {
  SettingsChanges::RequireFile(options);
  const NamedBlock named = BlocksOf(options).front();
  Values shown;
  std::string text;
  {
    const auto file =
        std::make_shared<SettingsFile>(options.file, SettingsPurpose::kRead, options.may_create);
    SettingsBlock block(named.group, file, named.node_path, options.may_create);
    text = TextToEdit(block, shown);
  }
  const std::string scratch = MakeTemporaryFile(text);
  const auto remove = [&scratch] {
    std::error_code ignored;
    std::filesystem::remove(std::u8string(scratch.begin(), scratch.end()), ignored);
  };
  for (;;) {
    try {
      RunEditor(scratch);
    } catch (const Failure&) {
      remove();
      throw;
    }
    std::string reason;
    const auto edited = sab::ReadFileBytes(FromUtf8(scratch), reason);
    if (!edited) throw Failure(scratch + ": " + reason);
    if (edited->find_first_not_of(" \t\r\n") == std::string::npos) {
      remove();
      throw Failure(
          "what the editor left is empty, so nothing was changed; \"sabxml settings unset\" "
          "removes keys");
    }
    try {
      const Values wanted = ValuesOf(*edited);
      SettingsChanges changes(options,
                              wanted == shown ? SettingsPurpose::kRead : SettingsPurpose::kChange);
      AddChanges(changes, changes.Block(named.group, named.node_path), shown, wanted);
      changes.Finish();
      return remove();
    } catch (const Failure& failure) {
      if (WantsToEditAgain(failure)) continue;
    } catch (const sab::ComError& error) {
      if (WantsToEditAgain(Failure(error.what(), error.Code()))) continue;
    }
    throw Failure("nothing was changed; what you wrote is in " + scratch);
  }
}

}  // namespace sabxml::cli
