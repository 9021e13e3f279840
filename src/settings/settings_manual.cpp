#include "settings/settings_manual.h"

#include "formats/documents.h"
#include "formats/manual.h"
#include "settings/settings_groups.h"

namespace sab {
namespace {

constexpr char kHead[] =
    "# Settings\n"
    "\n"
    "The keys of every settings group, in the order of the file. This page is printed from the "
    "key\n"
    "tables; a test compares it with them.\n"
    "\n"
    "A key is an element under the node path that `Load` and `Save` are given. `Save` adds new\n"
    "elements and leaves those that are there; `Load` takes the first of a name. A missing key "
    "leaves\n"
    "its value as it is.\n";

constexpr char kTypes[] =
    "\n## Types\n"
    "\n"
    "| type | in the file |\n"
    "|---|---|\n"
    "| text | as it is, without white space at its ends |\n"
    "| flag | -1 for true, 0 for false; any other number is kept |\n"
    "| strict flag | true exactly for -1 |\n"
    "| short, unsigned short | decimal, cut to 16 bits |\n"
    "| wide short | decimal, 32 bits, all of which are kept; the property hands out 16 |\n"
    "| int | decimal, 32 bits |\n"
    "| int or INT_MAX | the same; `INT_MAX` means 2147483647 |\n"
    "| unsigned | 32 bits, written as if there were a sign: 0xFF000000 is -16777216 |\n"
    "| float, double | six decimals |\n"
    "| list of … | semicolons between the elements; a save writes one after the last as well |\n"
    "| structure | elements of its own |\n";

void PrintGroup(const SettingsGroup& group, std::string& out) {
  out += "\n## " + std::string(group.class_name) + ": " + std::string(group.about) + "\n\n";
  out += "| key | member | meaning | type | default | |\n|---|---|---|---|---|---|\n";
  const SettingsFields fields = group.make_fields();
  for (const SettingsRow& row : group.rows()) {
    const std::string value = row.format ? ToUtf8(row.format(fields.get())) : "";
    out += "| `" + std::string(row.key) + "` | `" + std::string(row.property) + "` | " +
           std::string(row.rule->help) + " | " + WordsForSetting(row.type) + " | " + value + " | " +
           NoteOf(row) + " |\n";
  }
}

}  // namespace

std::string WordsForSetting(Type type) {
  return type == Type::kNone ? "structure" : std::string(formats::WordsFor(type));
}

std::string NoteOf(const SettingsRow& row) {
  if (!row.IsSaved()) return "only loaded";
  if (!row.IsLoaded()) return "only saved";
  const std::string_view text = row.rule->when_missing;
  return text.empty() ? "" : std::string(text) + " when missing";
}

std::string SettingsManual() {
  std::string out = kHead;
  out += kTypes;
  for (const SettingsGroup& group : SettingsGroups()) PrintGroup(group, out);
  out +=
      "\n## Groups without keys of their own\n\n"
      "These keep every element under the node that has no elements inside, the first of a name,\n"
      "in the order of the file, as named values:\n\n";
  for (const std::string_view name : formats::NamedValueClasses()) {
    out += "- `" + std::string(name) + "`\n";
  }
  return out;
}

}  // namespace sab
