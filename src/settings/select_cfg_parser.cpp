#include "settings/select_cfg_parser.h"

#include "formats/settings_select.h"

namespace sab {

std::span<const SettingsRow> SelectCfgFields::Rows() {
  using F = SelectCfgFields;
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
      Bind<"SelectionPreview", &F::SelectionPreview>, Bind<"SelectAllLayer", &F::SelectAll_Layer>,
      Bind<"SelectAllLnType", &F::SelectAll_LnType>, Bind<"SelectAllColor", &F::SelectAll_Color>,
      Bind<"IncludeTypes", &F::SelectIncludeTypes>, Bind<"ExcludeTypes", &F::SelectExcludeTypes>,
      Bind<"ExceptiveColors", &F::ExceptiveColors>,
      Bind<"IncludeTypeIDs", &F::SelectIncludeTypeIDs>,
      Bind<"ExcludeTypeIDs", &F::SelectExcludeTypeIDs>,
      Bind<"SndRKeyEditMode", &F::SndRKeyEditMode>,
      Bind<"PopupNoteWhenModifyLocalData", &F::PopupNoteWhenModifyLocalData>,
      Bind<"WheelZoomMode", &F::WheelZoomMode>, Bind<"GraphicDim", &F::IsGraphicDim>>();
  return kRows;
}

}  // namespace sab
