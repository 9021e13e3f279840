#include "settings/settings_groups.h"

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
constexpr SettingsGroup Group(std::string_view class_name, std::string_view about) {
  return {class_name, about, &Fields::Rows, &MakeFields<Fields>};
}

constexpr SettingsGroup kGroups[] = {
    Group<SysParameterCfgFields>("VeSysParameterCfgParser", "system parameters"),
    Group<DisplayCfgFields>("VeDisplayCfgParser", "screen display"),
    Group<FilePathCfgFields>("VeFilePathCfgParser", "folders"),
    Group<SelectCfgFields>("VeSelectCfgParser", "selecting objects"),
    Group<TxtFields>("VeTxtParser", "text"),
    Group<AutoUpdateAdminCfgFields>("VeAutoUpdateAdminCfgParser",
                                    "administration of the automatic update"),
};

constexpr std::string_view kNamedValueClasses[] = {
    "VeDWGInterfaceCfgParser", "VeFileAttributeCfgParser", "VeProductCfgParser",
    "VeSmartPosCfgParser",     "VeSmartPosParaParser",     "VeProjectionCfgParser",
    "VeBomcfgParser",          "VeFileBaleCfgParser",      "VeStdMgrCfgParser",
    "VeCustomPTParser",
};

}  // namespace

std::span<const SettingsGroup> SettingsGroups() { return kGroups; }

std::span<const std::string_view> NamedValueClasses() { return kNamedValueClasses; }

const SettingsGroup* FindSettingsGroup(std::string_view class_name) {
  for (const SettingsGroup& group : kGroups) {
    if (group.class_name == class_name) return &group;
  }
  return nullptr;
}

}  // namespace sab
