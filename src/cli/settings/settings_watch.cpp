#include <chrono>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/platform.h"
#include "cli/settings/settings_commands.h"
#include "cli/standard_input.h"
#include "cli/watched_files.h"

namespace sabxml::cli {
namespace {

struct WatchedValue {
  std::string title;  // of its block
  SettingsEntry entry;
  Json value;  // null where the file does not have it and there is no default
};

std::shared_ptr<SettingsFile> Read(const std::string& name) {
  return std::make_shared<SettingsFile>(name, SettingsPurpose::kRead);
}

std::vector<WatchedValue> ValuesIn(const std::shared_ptr<SettingsFile>& file,
                                   const std::vector<NamedBlock>& blocks) {
  std::vector<WatchedValue> values;
  for (const NamedBlock& named : blocks) {
    SettingsBlock block(named.group, file, named.node_path, true);
    std::vector<SettingsEntry> entries;
    for (const std::string& key : named.names) entries.push_back(block.EntryNamed(key));
    if (named.names.empty()) entries = block.Entries();
    for (SettingsEntry& entry : entries) {
      const bool has_value = entry.row || !entry.copies.empty();
      Json value = has_value ? entry.AsJson() : Json();
      entry.copies.clear();  // the elements go with their document
      values.push_back({named.Title(), std::move(entry), std::move(value)});
    }
  }
  return values;
}

// The file may get the block later; a misspelt path would be waited for without end.
void WarnOfMissingBlocks(SettingsFile& file, const std::vector<NamedBlock>& blocks) {
  for (const NamedBlock& named : blocks) {
    try {
      file.Require(named.node_path);
    } catch (const Failure& failure) {
      Warn(failure.Explanation() + "\nWaiting until it does.");
    }
  }
}

std::string TimeNow() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::ostringstream text;
  text << std::put_time(std::localtime(&now), "%Y-%m-%dT%H:%M:%S");
  return text.str();
}

const Json* FindValue(const std::vector<WatchedValue>& values, const WatchedValue& wanted) {
  for (const WatchedValue& value : values) {
    if (value.title == wanted.title && value.entry.key == wanted.entry.key) return &value.value;
  }
  return nullptr;
}

std::string ShownValue(const Json& value) {
  if (value.is_null()) return "(not there)";
  const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
  return text.empty() ? "(empty)" : OnOneLine(text);
}

class ChangePrinter {
 public:
  explicit ChangePrinter(const SettingsOptions& options, bool has_titles)
      : as_json_(options.as_json), has_titles_(has_titles) {}

  std::size_t Compare(const std::vector<WatchedValue>& before,
                      const std::vector<WatchedValue>& after) const {
    std::size_t count = 0;
    for (const WatchedValue& value : before) {
      const Json* const now = FindValue(after, value);
      const Json gone;
      if (const Json& next = now ? *now : gone; next != value.value)
        Print(value, value.value, next, count);
    }
    for (const WatchedValue& value : after) {
      if (!FindValue(before, value) && !value.value.is_null())
        Print(value, Json(), value.value, count);
    }
    std::cout.flush();
    return count;
  }

 private:
  void Print(const WatchedValue& value, const Json& before, const Json& after,
             std::size_t& count) const {
    ++count;
    if (as_json_) {
      const std::size_t colon = value.title.find(':');
      const Json line = {{"time", TimeNow()},
                         {"class", value.title.substr(0, colon)},
                         {"node", value.title.substr(colon + 1)},
                         {"key", value.entry.key},
                         {"before", before},
                         {"after", after}};
      std::cout << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
      return;
    }
    std::cout << TimeNow() << "  " << (has_titles_ ? value.title + " " : "") << value.entry.key
              << "  " << ShownValue(before) << " -> " << ShownValue(after) << '\n';
  }

  bool as_json_;
  bool has_titles_;
};

}  // namespace

void WatchSettings(const SettingsOptions& options) {
  if (options.file == kStandardInput)
    throw CLI::ValidationError("settings watch", "the standard input does not change; name a file");
  CatchInterrupt();
  const std::vector<NamedBlock> blocks = BlocksOf(options);
  WatchedFiles watched;
  watched.Watch({options.file});
  std::shared_ptr<SettingsFile> file;
  try {
    file = Read(options.file);
  } catch (const Failure&) {
    // On Windows a file that is just being replaced is missing for a moment.
    if (WaitForInterrupt(WatchedFiles::kInterval)) return;
    file = Read(options.file);
  }
  std::vector<WatchedValue> values = ValuesIn(file, blocks);
  WarnOfMissingBlocks(*file, blocks);
  file.reset();
  if (ErrorsAreOnTerminal())
    std::cerr << "Watching " << options.file << "; Ctrl+C ends it." << std::endl;
  const ChangePrinter printer(options, blocks.size() > 1);
  std::string last_failure;
  for (std::size_t count = 0; options.changes == 0 || count < options.changes;) {
    if (WaitForInterrupt(WatchedFiles::kInterval)) return;
    if (watched.Changed().empty()) continue;
    try {
      std::vector<WatchedValue> now = ValuesIn(Read(options.file), blocks);
      count += printer.Compare(values, now);
      values = std::move(now);
      last_failure.clear();
    } catch (const Failure& failure) {
      // A file that is being replaced is soon there again; of one that stays away once is enough.
      if (failure.Explanation() != last_failure) Warn(failure.Explanation());
      last_failure = failure.Explanation();
    }
  }
}

}  // namespace sabxml::cli
