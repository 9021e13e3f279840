#include "settings/txt_parser.h"

namespace sab {

using F = TxtFields;

std::span<const SettingsRow> TxtFields::Rows() {
  static constexpr SettingsRow kRows[] = {
      Setting<&F::DefChsFont>("DefChsFont"),
      Setting<&F::DefWestFont>("DefWestFont"),
      Setting<&F::TextMirrorMode>("TxtMirrorMode").Of("TextMirrorMode"),
      Setting<&F::InCodePage>("InCodePage"),
      Setting<&F::OutCodePage>("OutCodePage"),
      Flag<&F::IsExplodeByOneself>("ExplodeByOneself").Of("IsExplodeByOneself"),
      Flag<&F::IsIsUseEditBckClr>("IsUseEditBckClr").Of("IsIsUseEditBckClr"),
      Setting<&F::TxtEditBckClr>("TxtEditBckClr"),
      Flag<&F::IsIsUseEditSelClr>("IsUseEditSelClr").Of("IsIsUseEditSelClr"),
      Setting<&F::TxtEditSelClr>("TxtEditSelClr"),
      Setting<&F::DefTxtHei>("DefTxtHei"),
  };
  return kRows;
}

}  // namespace sab
