#include "settings/txt_parser.h"

#include "formats/settings_text.h"

namespace sab {

std::span<const SettingsRow> TxtFields::Rows() {
  using F = TxtFields;
  static constexpr auto kRows =
      BindSettings<formats::kTextSettings, Bind<"DefChsFont", &F::DefChsFont>,
                   Bind<"DefWestFont", &F::DefWestFont>, Bind<"TxtMirrorMode", &F::TextMirrorMode>,
                   Bind<"InCodePage", &F::InCodePage>, Bind<"OutCodePage", &F::OutCodePage>,
                   Bind<"ExplodeByOneself", &F::IsExplodeByOneself>,
                   Bind<"IsUseEditBckClr", &F::IsIsUseEditBckClr>,
                   Bind<"TxtEditBckClr", &F::TxtEditBckClr>,
                   Bind<"IsUseEditSelClr", &F::IsIsUseEditSelClr>,
                   Bind<"TxtEditSelClr", &F::TxtEditSelClr>, Bind<"DefTxtHei", &F::DefTxtHei>>();
  return kRows;
}

}  // namespace sab
