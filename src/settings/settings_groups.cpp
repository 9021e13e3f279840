#include "settings/settings_groups.h"

#include "formats/settings_display.h"
#include "formats/settings_file_path.h"
#include "formats/settings_select.h"
#include "formats/settings_system.h"
#include "formats/settings_text.h"
#include "formats/settings_update.h"
#include "settings/auto_update_admin_cfg_parser.h"
#include "settings/display_cfg_parser.h"
#include "settings/file_path_cfg_parser.h"
#include "settings/select_cfg_parser.h"
#include "settings/sys_parameter_cfg_parser.h"
#include "settings/txt_parser.h"

namespace sab {
namespace {

template <class Fields>
SettingsFields MakeFields() {
  return {new Fields(), [](void* fields) { delete static_cast<Fields*>(fields); }};
}

template <class Fields>
constexpr SettingsGroup Group(const formats::SettingsGroup& form) {
  return {form.class_name, form.about, &Fields::Rows, &MakeFields<Fields>};
}

constexpr SettingsGroup kGroups[] = {
    Group<SysParameterCfgFields>(formats::kSystemGroup),
    Group<DisplayCfgFields>(formats::kDisplayGroup),
    Group<FilePathCfgFields>(formats::kFilePathGroup),
    Group<SelectCfgFields>(formats::kSelectGroup),
    Group<TxtFields>(formats::kTextGroup),
    Group<AutoUpdateAdminCfgFields>(formats::kUpdateGroup),
};

}  // namespace

std::span<const SettingsGroup> SettingsGroups() { return kGroups; }

}  // namespace sab
