#include <sabxml/custom_print.h>

#include "framework/app_parser.h"
#include "framework/cmd_parser.h"
#include "framework/element_objects.h"
#include "framework/env_parser.h"
#include "framework/module_parser.h"
#include "framework/tmpl_parser.h"
#include "framework/user_interface/element_objects.h"
#include "framework/user_interface/ui_parser.h"
#include "object/component.h"
#include "server/class_entry.h"
#include "settings/auto_update_admin_cfg_parser.h"
#include "settings/display_cfg_parser.h"
#include "settings/file_bale_cfg_parser.h"
#include "settings/file_path_cfg_parser.h"
#include "settings/named_value_groups.h"
#include "settings/select_cfg_parser.h"
#include "settings/sys_parameter_cfg_parser.h"
#include "settings/txt_parser.h"
#include "standards/standard_cfg_parser.h"
#include "standards/standard_parser.h"
#include "standards/std_sym_rev_parser.h"
#include "standards/std_symbol_parser.h"
#include "templates/txt_template_file_parser.h"

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

// It was new with a capital I.
constexpr ClassEntry UiRow() {
  ClassEntry row = Row<CVeUiParser>(Registration::kWithProgIds);
  row.registered_description = "VeUIParser Class";
  row.registered_prog_id = "SabXmlParser.VeUIParser.1";
  row.registered_version_independent_prog_id = "SabXmlParser.VeUIParser";
  return row;
}

// Its registered identifier is not that of the type library; it is created by either.
constexpr ClassEntry CustomPrintRow() {
  ClassEntry row = Row<CVeCustomPTParser>(Registration::kClassIdOnly);
  row.type_library_clsid = row.clsid;
  row.clsid = &CLSID_VeCustomPTParserRegistered;
  return row;
}

constexpr ClassEntry FileBaleRow() {
  ClassEntry row = Row<CVeFileBaleCfgParser>(Registration::kClassIdOnly);
  row.registered_description = "VePrsFileBaleCfg Class";
  return row;
}

constexpr ClassEntry StdSymbolRow() {
  ClassEntry row = Row<CVeStdSymbolParser>(Registration::kClassIdOnly);
  row.registered_description = "VeStdSymbolStdParser Class";
  return row;
}

using enum Registration;

// In the order in which the classes are registered.
constexpr ClassEntry kClasses[] = {
    Row<CVeTmplParser>(kWithProgIds),
    UiRow(),
    Row<CVePrsUI>(kWithProgIds),
    Row<CVePrsMainMenu>(kWithProgIds),
    Row<CVePrsAccel>(kWithProgIds),
    Row<CVePrsCustomWnd>(kWithProgIds),
    Row<CVePrsInstruction>(kWithProgIds),
    Row<CVePrsMenuItem>(kWithProgIds),
    Row<CVePrsPrompt>(kWithProgIds),
    Row<CVePrsStatusBar>(kWithProgIds),
    Row<CVePrsToolBar>(kWithProgIds),
    Row<CVeAppParser>(kWithProgIds),
    Row<CVeModuleParser>(kWithProgIds),
    Row<CVeEnvParser>(kWithProgIds),
    Row<CVeCmdParser>(kWithProgIds),
    Row<CVePrsAccelGroup>(kWithProgIds),
    Row<CVeDisplayCfgParser>(kWithProgIds),
    Row<CVeDWGInterfaceCfgParser>(kWithProgIds),
    Row<CVeFileAttributeCfgParser>(kWithProgIds),
    Row<CVeFilePathCfgParser>(kWithProgIds),
    Row<CVeProductCfgParser>(kWithProgIds),
    Row<CVeSelectCfgParser>(kWithProgIds),
    Row<CVeSysParameterCfgParser>(kWithProgIds),
    Row<CVeSmartPosCfgParser>(kWithProgIds),
    Row<CVeSmartPosParaParser>(kWithProgIds),
    Row<CVePrsConfigColl>(kWithProgIds),
    Row<CVePrsConfig>(kWithProgIds),
    Row<CVePrsOpenFileType>(kWithProgIds),
    Row<CVePrsOpenFileTypeColl>(kWithProgIds),
    Row<CVePrsEditObj>(kWithProgIds),
    Row<CVePrsEditObjColl>(kWithProgIds),
    Row<CVePrsCommand>(kWithProgIds),
    Row<CVePrsCommandColl>(kWithProgIds),
    Row<CVePrsMainButton>(kWithProgIds),
    Row<CVePrsQuickAccessTool>(kWithProgIds),
    Row<CVePrsRibbonBar>(kWithProgIds),
    Row<CVePrsRibbonTab>(kWithProgIds),
    Row<CVePrsRibbonTabColl>(kWithProgIds),
    Row<CVePrsRibbonPanel>(kWithProgIds),
    Row<CVePrsRibbonPanelColl>(kWithProgIds),
    Row<CVePrsHiddenButtons>(kWithProgIds),
    Row<CVePrsRibbonButton>(kWithProgIds),
    Row<CVePrsRibbonButtonColl>(kWithProgIds),
    Row<CVePrsAccelColl>(kWithProgIds),
    Row<CVePrsAccelGroupColl>(kWithProgIds),
    Row<CVePrsToolBarButton>(kWithProgIds),
    Row<CVePrsToolBarButtonColl>(kWithProgIds),
    Row<CVePrsCustomWndColl>(kWithProgIds),
    Row<CVePrsInstructionColl>(kWithProgIds),
    Row<CVePrsMenuItemColl>(kWithProgIds),
    Row<CVePrsPromptColl>(kWithProgIds),
    Row<CVePrsToolBarColl>(kWithProgIds),
    Row<CVeProjectionCfgParser>(kWithProgIds),
    Row<CVeTxtParser>(kWithProgIds),
    Row<CVePrsCommandSearch>(kWithProgIds),
    AutoUpdateAdminRow(),
    Row<CVeStandardParserColl>(kWithProgIds),
    Row<CVeStdSymbolParserColl>(kWithProgIds),
    Row<CVeStdSymRevParserColl>(kWithProgIds),
    Row<CVeTxtTemplateFileParser>(kClassIdOnly),
    CustomPrintRow(),
    Row<CVeBomcfgParser>(kClassIdOnly),
    FileBaleRow(),
    Row<CVePrsFileBaleSet>(kClassIdOnly),
    Row<CVeStandardCfgParser>(kClassIdOnly),
    Row<CVeStandardParser>(kClassIdOnly),
    StdSymbolRow(),
    Row<CVeStdRoughRevParser>(kClassIdOnly),
    Row<CVeStdGeoTolRevParser>(kClassIdOnly),
    Row<CVeStdWeldRevParser>(kClassIdOnly),
    Row<CVeStdDatumRevParser>(kClassIdOnly),
    Row<CVeStdCutsRevParser>(kClassIdOnly),
    Row<CVeStdPartnoRevParser>(kClassIdOnly),
    Row<CVeStdBomRevParser>(kClassIdOnly),
    Row<CVeStdDetailViewRevParser>(kClassIdOnly),
    Row<CVeStdDimLeaderRevParser>(kClassIdOnly),
    Row<CVeStdTaperRevParser>(kClassIdOnly),
    Row<CVeStdHoleListRevParser>(kClassIdOnly),
    Row<CVeStdDimRevParser>(kClassIdOnly),
    Row<CVeStdCenterLnRevParser>(kClassIdOnly),
    Row<CVeStdMgrCfgParser>(kClassIdOnly),
    Row<CVePrsFileBaleColl>(kNone),
    Row<CVePrsCommandImage>(kNone),
    Row<CVePrsCommandImageColl>(kNone),
};

}  // namespace

std::span<const ClassEntry> ClassTable() { return kClasses; }

}  // namespace sab
