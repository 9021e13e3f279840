#include "settings/display_cfg_parser.h"

#include "formats/settings_display.h"

namespace sab {

std::span<const SettingsRow> DisplayCfgFields::Rows() {
  using F = DisplayCfgFields;
  static constexpr auto kRows = BindSettings<
      formats::kDisplaySettings, Bind<"ObscuredColor", &F::ObscuredColor>,
      Bind<"ZoomFactor", &F::ZoomFactor>, Bind<"DragMode", &F::DragMode>,
      Bind<"PtMode", &F::PtMode>, Bind<"PtSize", &F::PtSize>, Bind<"CursorSize", &F::CursorSize>,
      Bind<"BigCursor", &F::BigCursor>, Bind<"ShowViewFrm", &F::ShowViewFrm>,
      Bind<"CurCoordColor", &F::CurCoordColor>, Bind<"ModelBkColor", &F::ModelBkColor>,
      Bind<"LayoutBkColor", &F::LayoutBkColor>, Bind<"InCurCoordColor", &F::InCurCoordColor>,
      Bind<"HighLightColor", &F::HighLightColor>,
      Bind<"HighLightUseBkColor", &F::HighLightUseBkColor>, Bind<"CursorColor", &F::CursorColor>,
      Bind<"MinTxtShowSize", &F::MinTxtShowSize>, Bind<"UCSDispCtrl", &F::UCSDisplayCtrl>,
      Bind<"UCSDispColor", &F::UCSDisplayColor>,
      Bind<"LineWidthDispScale", &F::LineWidthDisplayScale>,
      Bind<"LWMmToPixels", &F::LineWidthConvertScale>,
      Bind<"DisplayByLineWidth", &F::IsDisplayByLineWidth>,
      Bind<"GlobalLnTypeScale", &F::GlobalLnTypeScale>, Bind<"RubberLnColor", &F::RubberLnColor>,
      Bind<"UCSIconStyle", &F::UCSIconStyle>, Bind<"UCSIconSize", &F::UCSIconSize>,
      Bind<"UCSIconWidth", &F::UCSIconLnWidth>, Bind<"UserInputMark", &F::UserInputMark>,
      Bind<"HatchLineDensity", &F::HatchLineDensity>,
      Bind<"AccelerateWhileZoom", &F::AccelerateWhileZoom>,
      Bind<"UndoDisplayOpt", &F::UndoDisplayOpt>, Bind<"SaveDisplayOpt", &F::SaveDisplayOpt>,
      Bind<"DefLineWidthDispScale", &F::DefLineWidthDisplayScale>,
      Bind<"DefLWMmToPixels", &F::DefLineWidthConvertScale>, Bind<"XRefFadeVal", &F::XRefFadeVal>,
      Bind<"RefEditFadeVal", &F::RefEditFadeVal>, Bind<"LayLockFadeVal", &F::LayLockFadeVal>,
      Bind<"XRefFadeCtl", &F::XRefFadeCtl>, Bind<"RefEditFadeCtl", &F::RefEditFadeCtl>,
      Bind<"LayLockFadeCtl", &F::LayLockFadeCtl>>();
  return kRows;
}

}  // namespace sab
