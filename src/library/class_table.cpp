#include "common/component.h"
#include "framework/app_parser.h"
#include "framework/cmd_parser.h"
#include "framework/element_objects.h"
#include "framework/env_parser.h"
#include "framework/module_parser.h"
#include "framework/tmpl_parser.h"
#include "server/class_entry.h"
#include "settings/auto_update_admin_cfg_parser.h"

namespace sab {
namespace {

template <class Class>
constexpr ClassEntry Row(Registration registration) {
  return {&Class::Coclass::clsid, Class::Coclass::kName, registration, &CreateObject<Class>};
}

constexpr ClassEntry AutoUpdateAdminRow() {
  ClassEntry row = Row<CVeAutoUpdateAdminCfgParser>(Registration::kWithProgIds);
  row.registered_prog_id = "SabXmlParser.VeAutoUpdateAdminCfgPars.1";  // cut short when it was new
  return row;
}

using enum Registration;

// In the order in which the classes are registered.
constexpr ClassEntry kClasses[] = {
    // clang-format off
    Row<CVeTmplParser>(kWithProgIds),
    Row<CVePrsAccel>(kWithProgIds),
    Row<CVeAppParser>(kWithProgIds),
    Row<CVeModuleParser>(kWithProgIds),
    Row<CVeEnvParser>(kWithProgIds),
    Row<CVeCmdParser>(kWithProgIds),
    Row<CVePrsConfigColl>(kWithProgIds),
    Row<CVePrsConfig>(kWithProgIds),
    Row<CVePrsOpenFileType>(kWithProgIds),
    Row<CVePrsOpenFileTypeColl>(kWithProgIds),
    Row<CVePrsEditObj>(kWithProgIds),
    Row<CVePrsEditObjColl>(kWithProgIds),
    Row<CVePrsCommand>(kWithProgIds),
    Row<CVePrsCommandColl>(kWithProgIds),
    Row<CVePrsAccelColl>(kWithProgIds),
    AutoUpdateAdminRow(),
    // clang-format on
};

}  // namespace

std::span<const ClassEntry> ClassTable() { return kClasses; }

}  // namespace sab
