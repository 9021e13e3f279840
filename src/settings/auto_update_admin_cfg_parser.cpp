#include "settings/auto_update_admin_cfg_parser.h"

namespace sab {

using F = AutoUpdateAdminCfgFields;

std::span<const SettingsRow> AutoUpdateAdminCfgFields::Rows() {
  static constexpr SettingsRow kRows[] = {
      StrictFlag<&F::DisableHttp>("DisableHttp").OnlyLoaded(),
      StrictFlag<&F::ReadOnly>("ReadOnly").OnlyLoaded(),
      IntOrMax<&F::Interval>("Interval").OnlyLoaded(),
      Setting<&F::Server>("Server").OnlyLoaded(),
  };
  return kRows;
}

HRESULT CVeAutoUpdateAdminCfgParser::Save(BSTR, BSTR) {
  return Fail(E_NOTIMPL, "The administration of the automatic update is read-only.");
}

}  // namespace sab
