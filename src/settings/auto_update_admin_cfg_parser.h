#pragma once

#include "settings/settings_parser.h"

namespace sab {

struct AutoUpdateAdminCfgFields {
  VARIANT_BOOL DisableHttp = VARIANT_FALSE;
  VARIANT_BOOL ReadOnly = VARIANT_FALSE;
  int Interval = -1;  ///< no interval configured; INT_MAX means never
  Bstr Server;

  static std::span<const SettingsRow> Rows();
};

/// Administers the host's automatic update. It only reads: the file belongs to the administrator.
class CVeAutoUpdateAdminCfgParser
    : public SettingsParser<coclass::VeAutoUpdateAdminCfgParser, AutoUpdateAdminCfgFields> {
 public:
  HRESULT STDMETHODCALLTYPE Save(BSTR i_bsCfgPath, BSTR i_bsNodePath) override;
};

}  // namespace sab
