#pragma once

#include "settings/settings_parser.h"

namespace sab {

/// Screen display. What a colour's 32 bits mean is the host's affair.
struct DisplayCfgFields : Settings<DisplayCfgFields> {
  ULONG ObscuredColor = 0;
  WideShort ZoomFactor;
  VARIANT_BOOL DragMode = VARIANT_FALSE;
  WideShort PtMode;
  WideShort PtSize;
  WideShort CursorSize;
  VARIANT_BOOL BigCursor = VARIANT_FALSE;
  VARIANT_BOOL ShowViewFrm = VARIANT_FALSE;
  ULONG CurCoordColor = 0;
  ULONG ModelBkColor = 0;
  ULONG LayoutBkColor = 0;
  ULONG InCurCoordColor = 0;
  ULONG HighLightColor = 0;
  VARIANT_BOOL HighLightUseBkColor = VARIANT_FALSE;
  ULONG CursorColor = 0;
  SHORT MinTxtShowSize = 0;
  SHORT UCSDisplayCtrl = 0;
  ULONG UCSDisplayColor = 0;
  double LineWidthDisplayScale = 0;
  double LineWidthConvertScale = 0;
  VARIANT_BOOL IsDisplayByLineWidth = VARIANT_FALSE;
  float GlobalLnTypeScale = 0;
  ULONG RubberLnColor = 0;
  int UCSIconStyle = 0;
  int UCSIconSize = 0;
  int UCSIconLnWidth = 0;
  VARIANT_BOOL UserInputMark = VARIANT_FALSE;
  LONG HatchLineDensity = 10000;
  VARIANT_BOOL AccelerateWhileZoom = VARIANT_TRUE;
  VARIANT_BOOL UndoDisplayOpt = VARIANT_FALSE;
  VARIANT_BOOL SaveDisplayOpt = VARIANT_FALSE;
  double DefLineWidthDisplayScale = 1.2;
  double DefLineWidthConvertScale = 6.0;
  WideShort XRefFadeVal;
  WideShort RefEditFadeVal;
  WideShort LayLockFadeVal;
  VARIANT_BOOL XRefFadeCtl = VARIANT_FALSE;
  VARIANT_BOOL RefEditFadeCtl = VARIANT_FALSE;
  VARIANT_BOOL LayLockFadeCtl = VARIANT_FALSE;

  static std::span<const SettingsRow> Rows();
};

using CVeDisplayCfgParser = Component<coclass::VeDisplayCfgParser, DisplayCfgFields>;

}  // namespace sab
