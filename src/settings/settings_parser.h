#pragma once

#include "object/component.h"
#include "settings/settings_table.h"

namespace sab {

/// What every settings group does: loads its values from the elements under a node path of a file,
/// and saves them there as new elements.
///
/// @tparam Fields plain struct of the values, derived from this, with
///           static std::span<const SettingsRow> Rows();
template <class Fields>
struct Settings {
  void Save(TextView file, TextView node_path) const {
    ConfigDocument document;
    document.LoadToChange(file);
    if (const ConfigElement node = document.SelectToChange(node_path))
      AppendSettings(Fields::Rows(), static_cast<const Fields*>(this), node);
    document.Save(file);
  }
  void Load(TextView file, TextView node_path) {
    ConfigDocument document;
    document.Load(file);  // without a file every value stays
    LoadSettings(Fields::Rows(), static_cast<Fields*>(this), document, node_path);
  }
};

}  // namespace sab
