#include "settings/auto_update_admin_cfg_parser.h"

#include "common/config_document.h"
#include "common/conversions.h"

namespace sab {

HRESULT CVeAutoUpdateAdminCfgParser::Save(BSTR, BSTR) {
  return Fail(E_NOTIMPL, "The administration of the automatic update is read-only.");
}

HRESULT CVeAutoUpdateAdminCfgParser::Load(BSTR i_bsCfgPath, BSTR i_bsNodePath) {
  return Guarded([&] {
    ConfigDocument document;
    document.Load(Bstr::ViewOf(i_bsCfgPath));  // without a file every value stays
    const ConfigNodes nodes = document.SelectAll(Bstr::ViewOf(i_bsNodePath));
    Text text;
    if (const auto key = nodes.First("DisableHttp")) {
      fields.DisableHttp = ParseBool(key.ReadText(text));
    }
    if (const auto key = nodes.First("ReadOnly")) fields.ReadOnly = ParseBool(key.ReadText(text));
    if (const auto key = nodes.First("Interval")) {
      fields.Interval = ParseIntOrMax(key.ReadText(text));
    }
    if (const auto key = nodes.First("Server")) fields.Server.Assign(key.ReadText(text));
  });
}

}  // namespace sab
