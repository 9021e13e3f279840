#include "settings/select_cfg_parser.h"

namespace sab {

using F = SelectCfgFields;

std::span<const SettingsRow> SelectCfgFields::Rows() {
  // "Exculde" is how the interface spells it.
  static constexpr SettingsRow kRows[] = {
      Setting<&F::GripColor>("GripColor"),
      Setting<&F::PickBoxSize>("PickBoxSize"),
      Setting<&F::PickBoxColor>("PickBoxColor"),
      Setting<&F::GripSize>("GripSize"),
      Setting<&F::GripObjLimit>("GripObjLimit"),
      Setting<&F::RKeyActionMode>("RKeyActionMode"),
      Setting<&F::SpaceKeyActiveCmd>("SpaceKeyActiveCmd"),
      Setting<&F::CmdInteractionMode>("CmdInteractionMode"),
      Setting<&F::CmdContinueMode>("CmdContinueMode"),
      Setting<&F::RKeyCmdMode>("RKeyCmdMode"),
      Setting<&F::RKeyEditMode>("RKeyEditMode"),
      Setting<&F::RKeyAnnotateMode>("RKeyAnnotateMode"),
      Setting<&F::SpaceKeyAcceMenuMode>("SpaceKeyAcceMenuMode"),
      Setting<&F::AcceleratorEffect>("AcceleratorEffect"),
      Setting<&F::StretchGripParseMode>("StretchGripParseMode"),
      Setting<&F::SelectionPreview>("SelectionPreview"),
      Flag<&F::selects_all_layers>("SelectAllLayer").Of("SelectAll_Layer"),
      Flag<&F::selects_all_line_types>("SelectAllLnType").Of("SelectAll_LnType"),
      Flag<&F::selects_all_colors>("SelectAllColor").Of("SelectAll_Color"),
      Setting<&F::included_types>("IncludeTypes").Of("AddIncludeType"),
      Setting<&F::excluded_types>("ExcludeTypes").Of("AddExculdeType"),
      Setting<&F::excepted_colors>("ExceptiveColors").Of("AddExceptiveColor"),
      Setting<&F::included_type_ids>("IncludeTypeIDs").Of("AddIncludeTypeID"),
      Setting<&F::excluded_type_ids>("ExcludeTypeIDs").Of("AddExculdeTypeID"),
      Setting<&F::SndRKeyEditMode>("SndRKeyEditMode"),
      Flag<&F::notes_change_of_local_data>("PopupNoteWhenModifyLocalData"),
      Setting<&F::WheelZoomMode>("WheelZoomMode"),
      Setting<&F::IsGraphicDim>("GraphicDim").Of("IsGraphicDim"),
  };
  return kRows;
}

}  // namespace sab
