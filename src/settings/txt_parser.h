#pragma once

#include "settings/settings_parser.h"

namespace sab {

/// Text in drawings and in the text editor. Colours are 0x00BBGGRR.
struct TxtFields : Settings<TxtFields> {
  Bstr DefChsFont = Bstr(OLESTR("fangsong_GB2312"));
  Bstr DefWestFont = Bstr(OLESTR("fangsong_GB2312"));
  int TextMirrorMode = 0;
  int InCodePage = 936;
  int OutCodePage = 936;
  VARIANT_BOOL IsExplodeByOneself = VARIANT_TRUE;
  VARIANT_BOOL IsIsUseEditBckClr = VARIANT_FALSE;
  ULONG TxtEditBckClr = 0xFFFFFF;
  VARIANT_BOOL IsIsUseEditSelClr = VARIANT_FALSE;
  ULONG TxtEditSelClr = 0x703E10;
  double DefTxtHei = 3.5;

  static std::span<const SettingsRow> Rows();
};

using CVeTxtParser = Component<coclass::VeTxtParser, TxtFields>;

}  // namespace sab
