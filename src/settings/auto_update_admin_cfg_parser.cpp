#include "settings/auto_update_admin_cfg_parser.h"

#include "formats/settings_update.h"

namespace sab {

std::span<const SettingsRow> AutoUpdateAdminCfgFields::Rows() {
  using F = AutoUpdateAdminCfgFields;
  static constexpr auto kRows =
      BindSettings<formats::kUpdateSettings, Bind<"DisableHttp", &F::DisableHttp>,
                   Bind<"ReadOnly", &F::ReadOnly>, Bind<"Interval", &F::Interval>,
                   Bind<"Server", &F::Server>>();
  return kRows;
}

void AutoUpdateAdminCfgFields::Save(TextView, TextView) const {
  throw ComError(E_NOTIMPL, "The administration of the automatic update is read-only.");
}

}  // namespace sab
