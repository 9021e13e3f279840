#pragma once

#include "settings/settings_parser.h"

namespace sab {

/// Administers the host's automatic update. It only reads: the file belongs to the administrator.
struct AutoUpdateAdminCfgFields : Settings<AutoUpdateAdminCfgFields> {
  VARIANT_BOOL DisableHttp = VARIANT_FALSE;
  VARIANT_BOOL ReadOnly = VARIANT_FALSE;
  int Interval = -1;  ///< no interval configured; INT_MAX means never
  Bstr Server;

  void Save(TextView file, TextView node_path) const;

  static std::span<const SettingsRow> Rows();
};
using CVeAutoUpdateAdminCfgParser =
    Component<coclass::VeAutoUpdateAdminCfgParser, AutoUpdateAdminCfgFields>;

}  // namespace sab
