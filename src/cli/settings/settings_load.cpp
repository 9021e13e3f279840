// Taking over the values that "sabxml settings dump --json" printed.

#include "cli/commands.h"
#include "cli/settings/settings_changes.h"
#include "cli/settings/settings_value.h"
#include "cli/standard_input.h"
#include "cli/trace.h"
#include "platform/file.h"

namespace sabxml::cli {
namespace {

[[noreturn]] void RefuseDump(const SettingsOptions& options, const std::string& reason) {
  throw Failure((options.dump == kStandardInput ? "the standard input" : options.dump) + ": " +
                reason + ". Nothing was changed.");
}

Json DumpOf(const SettingsOptions& options) {
  std::string reason;
  Trace("opens " + options.dump + ": the values to load");
  const auto bytes = sab::ReadFileBytes(FromUtf8(PathToRead(options.dump)), reason);
  if (!bytes) RefuseDump(options, reason);
  try {
    return Json::parse(*bytes);
  } catch (const Json::exception& error) {
    std::string what = error.what();
    for (const std::string_view head : {"] ", "parse error at "}) {
      if (const std::size_t at = what.find(head); at != what.npos) what.erase(0, at + head.size());
    }
    RefuseDump(options, "this is no JSON: " + what);
  }
}

std::string PlainAsGiven(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// A value of JSON as a person would give it on the command line. Raises Failure for one of another
// form than the key has.
std::string AsGiven(const SettingsEntry& entry, const Json& value) {
  const bool is_list = sab::formats::ElementOf(entry.Type()) != sab::Type::kNone;
  const Json elements = value.is_array() && is_list ? value : Json::array({value});
  std::string list;
  for (const Json& element : elements) {
    if (element.is_structured()) {
      throw Failure(entry.key + ": a single value" + (is_list ? " or a list of them" : "") +
                    " is wanted, not " + value.dump() + ". Nothing was changed.");
    }
    list += (list.empty() ? "" : ";") + PlainAsGiven(element);
  }
  return list;
}

const Json* Member(const Json& object, const char* name) {
  if (!object.is_object()) return nullptr;
  const auto found = object.find(name);
  return found == object.end() ? nullptr : &*found;
}

// The text that the dumped file had, where it still means the value: a value may have been edited.
std::optional<sab::Text> TextOfFirstCopy(SettingsBlock& block, const SettingsEntry& entry,
                                         const Json& dumped) {
  const Json* const copies = Member(dumped, "copies");
  if (!copies || !copies->is_array() || copies->empty()) return {};
  const Json* const text = Member(copies->front(), "text");
  if (!text || !text->is_string()) return {};
  const sab::Text file_text = FromUtf8(text->get<std::string>());
  const bool is_loaded = entry.row && entry.row->IsLoaded();
  const Json meaning =
      SettingAsJson(entry.Type(), is_loaded ? block.LoadedText(*entry.row, file_text) : file_text);
  // What is only saved has its default for a value.
  if (meaning == dumped["value"] || (entry.row && !is_loaded)) return file_text;
  return {};
}

// Whether the dumped file did not have the key and its value is still the default.
bool IsDefault(const SettingsBlock& block, const SettingsEntry& entry, const Json& dumped) {
  const Json* const copies = Member(dumped, "copies");
  if (!copies || !copies->is_array() || !copies->empty() || !entry.row) return false;
  if (!entry.row->format) return true;
  const sab::SettingsFields fields = block.Group().table->make_fields();
  return SettingAsJson(entry.Type(), entry.row->format(fields.get())) == dumped["value"];
}

void LoadValue(SettingsChanges& changes, SettingsBlock& block, const std::string& key,
               const Json& dumped) {
  // A plain value will do, too.
  const Json* const value = Member(dumped, "copies") ? Member(dumped, "value") : &dumped;
  SettingsEntry entry = block.EntryNamed(key);
  const Json* const type = Member(dumped, "type");
  const bool is_structure = entry.is_structure || (type && *type == "structure");
  if (is_structure) {
    if (value && *value != entry.AsJson())
      Warn(key + " is a structure of elements, which is not loaded; the host writes it");
    return;
  }
  if (!value || value->is_null())
    throw Failure(key + " has no value in the dump. Nothing was changed.");
  if (value != &dumped) {
    if (IsDefault(block, entry, dumped)) return changes.Unset(block, key);
    if (auto text = TextOfFirstCopy(block, entry, dumped))
      return changes.SetText(block, std::move(entry), *std::move(text));
  }
  changes.Set(block, key, AsGiven(entry, *value));
}

void LoadBlock(const SettingsOptions& options, SettingsChanges& changes, const Json& dump) {
  const Json* const class_name = Member(dump, "class");
  const Json* const node_path = Member(dump, "node");
  const Json* const values = Member(dump, "values");
  if (!class_name || !class_name->is_string() || !node_path || !node_path->is_string() || !values ||
      !values->is_object()) {
    RefuseDump(options,
               "\"class\", \"node\" and \"values\" are wanted, as \"sabxml settings dump --json\" "
               "prints them");
  }
  SettingsBlock& block = changes.Block(SettingsChoiceNamed(class_name->get<std::string>()),
                                       node_path->get<std::string>());
  for (const auto& [key, value] : values->items()) LoadValue(changes, block, key, value);
}

}  // namespace

void LoadSettingsDump(const SettingsOptions& options) {
  const Json dump = DumpOf(options);
  SettingsChanges changes(options);
  for (const Json& block : dump.is_array() ? dump : Json::array({dump}))
    LoadBlock(options, changes, block);
  changes.Finish();
}

}  // namespace sabxml::cli
