#include "settings/settings_table.h"

#include <vector>

namespace sab {

void LoadSettings(std::span<const SettingsRow> rows, void* fields, ConfigDocument& document,
                  TextView node_path) {
  std::vector<std::string_view> keys;
  keys.reserve(rows.size());
  for (const SettingsRow& row : rows) {
    if (row.IsLoaded()) keys.push_back(row.key);
  }
  const std::vector<ConfigElement> elements = document.SelectAll(node_path).First(keys);
  auto next = elements.begin();
  Text scratch;
  for (const SettingsRow& row : rows) {
    if (!row.IsLoaded()) continue;
    if (const ConfigElement& element = *next++) {
      if (row.read) {
        row.read(fields, element, scratch);
      } else {
        row.parse(fields, element.ReadText(scratch));
      }
    } else if (!row.rule->when_missing.empty()) {
      scratch.clear();
      AppendAscii(scratch, row.rule->when_missing);
      row.parse(fields, scratch);
    }
  }
}

void AppendSettings(std::span<const SettingsRow> rows, const void* fields, ConfigElement element) {
  for (const SettingsRow& row : rows) {
    if (!row.IsSaved()) continue;
    if (row.write) {
      row.write(fields, element.Append(row.key));
    } else {
      element.Append(row.key, row.format(fields));
    }
  }
}

}  // namespace sab
