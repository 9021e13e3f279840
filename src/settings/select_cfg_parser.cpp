#include "settings/select_cfg_parser.h"

#include "formats/settings_select.h"

namespace sab {

using F = SelectCfgFields;

std::span<const SettingsRow> SelectCfgFields::Rows() {
  static constexpr auto kRows = BindSettings<
      formats::kSelectSettings, Bind<"GripColor", &F::GripColor>,
      Bind<"PickBoxSize", &F::PickBoxSize>, Bind<"PickBoxColor", &F::PickBoxColor>,
      Bind<"GripSize", &F::GripSize>, Bind<"GripObjLimit", &F::GripObjLimit>,
      Bind<"RKeyActionMode", &F::RKeyActionMode>, Bind<"SpaceKeyActiveCmd", &F::SpaceKeyActiveCmd>,
      Bind<"CmdInteractionMode", &F::CmdInteractionMode>,
      Bind<"CmdContinueMode", &F::CmdContinueMode>, Bind<"RKeyCmdMode", &F::RKeyCmdMode>,
      Bind<"RKeyEditMode", &F::RKeyEditMode>, Bind<"RKeyAnnotateMode", &F::RKeyAnnotateMode>,
      Bind<"SpaceKeyAcceMenuMode", &F::SpaceKeyAcceMenuMode>,
      Bind<"AcceleratorEffect", &F::AcceleratorEffect>,
      Bind<"StretchGripParseMode", &F::StretchGripParseMode>,
      Bind<"SelectionPreview", &F::SelectionPreview>,
      Bind<"SelectAllLayer", &F::selects_all_layers>,
      Bind<"SelectAllLnType", &F::selects_all_line_types>,
      Bind<"SelectAllColor", &F::selects_all_colors>, Bind<"IncludeTypes", &F::included_types>,
      Bind<"ExcludeTypes", &F::excluded_types>, Bind<"ExceptiveColors", &F::excepted_colors>,
      Bind<"IncludeTypeIDs", &F::included_type_ids>, Bind<"ExcludeTypeIDs", &F::excluded_type_ids>,
      Bind<"SndRKeyEditMode", &F::SndRKeyEditMode>,
      Bind<"PopupNoteWhenModifyLocalData", &F::notes_change_of_local_data>,
      Bind<"WheelZoomMode", &F::WheelZoomMode>, Bind<"GraphicDim", &F::IsGraphicDim>>();
  return kRows;
}

}  // namespace sab
