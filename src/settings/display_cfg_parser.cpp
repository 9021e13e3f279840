#include "settings/display_cfg_parser.h"

namespace sab {

using F = DisplayCfgFields;

std::span<const SettingsRow> DisplayCfgFields::Rows() {
  static constexpr SettingsRow kRows[] = {
      Setting<&F::ObscuredColor>("ObscuredColor"),
      Setting<&F::ZoomFactor>("ZoomFactor"),
      Flag<&F::DragMode>("DragMode"),
      Setting<&F::PtMode>("PtMode"),
      Setting<&F::PtSize>("PtSize"),
      Setting<&F::CursorSize>("CursorSize"),
      Flag<&F::BigCursor>("BigCursor"),
      Flag<&F::ShowViewFrm>("ShowViewFrm"),
      Setting<&F::CurCoordColor>("CurCoordColor"),
      Setting<&F::ModelBkColor>("ModelBkColor"),
      Setting<&F::LayoutBkColor>("LayoutBkColor"),
      Setting<&F::InCurCoordColor>("InCurCoordColor"),
      Setting<&F::HighLightColor>("HighLightColor"),
      Flag<&F::HighLightUseBkColor>("HighLightUseBkColor"),
      Setting<&F::CursorColor>("CursorColor"),
      Setting<&F::MinTxtShowSize>("MinTxtShowSize"),
      Setting<&F::UCSDisplayCtrl>("UCSDispCtrl").Of("UCSDisplayCtrl"),
      Setting<&F::UCSDisplayColor>("UCSDispColor").Of("UCSDisplayColor"),
      Setting<&F::LineWidthDisplayScale>("LineWidthDispScale").Of("LineWidthDisplayScale"),
      Setting<&F::LineWidthConvertScale>("LWMmToPixels").Of("LineWidthConvertScale"),
      Flag<&F::IsDisplayByLineWidth>("DisplayByLineWidth").Of("IsDisplayByLineWidth"),
      Setting<&F::GlobalLnTypeScale>("GlobalLnTypeScale"),
      Setting<&F::RubberLnColor>("RubberLnColor"),
      Setting<&F::UCSIconStyle>("UCSIconStyle"),
      Setting<&F::UCSIconSize>("UCSIconSize"),
      Setting<&F::UCSIconLnWidth>("UCSIconWidth").Of("UCSIconLnWidth"),
      Flag<&F::UserInputMark>("UserInputMark"),
      Setting<&F::HatchLineDensity>("HatchLineDensity"),
      Flag<&F::AccelerateWhileZoom>("AccelerateWhileZoom"),
      Flag<&F::UndoDisplayOpt>("UndoDisplayOpt"),
      Flag<&F::SaveDisplayOpt>("SaveDisplayOpt"),
      Setting<&F::DefLineWidthDisplayScale>("DefLineWidthDispScale").Of("DefLineWidthDisplayScale"),
      Setting<&F::DefLineWidthConvertScale>("DefLWMmToPixels").Of("DefLineWidthConvertScale"),
      Setting<&F::XRefFadeVal>("XRefFadeVal"),
      Setting<&F::RefEditFadeVal>("RefEditFadeVal"),
      Setting<&F::LayLockFadeVal>("LayLockFadeVal"),
      Flag<&F::XRefFadeCtl>("XRefFadeCtl"),
      Flag<&F::RefEditFadeCtl>("RefEditFadeCtl"),
      Flag<&F::LayLockFadeCtl>("LayLockFadeCtl"),
  };
  return kRows;
}

}  // namespace sab
