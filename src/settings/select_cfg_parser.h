#pragma once

#include <vector>

#include "settings/settings_parser.h"

namespace sab {

/// Selecting objects: pick box, grips, mouse and keyboard, and the selection filter.
struct SelectCfgFields : Settings<SelectCfgFields> {
  // Kept in the file.
  ULONG GripColor = 0;
  USHORT PickBoxSize = 0;
  ULONG PickBoxColor = 0;
  USHORT GripSize = 0;
  ULONG GripObjLimit = 0;
  SHORT RKeyActionMode = 0;
  SHORT SpaceKeyActiveCmd = 0;
  SHORT CmdInteractionMode = 0;
  SHORT CmdContinueMode = 0;
  SHORT RKeyCmdMode = 0;
  SHORT RKeyEditMode = 0;
  SHORT RKeyAnnotateMode = 0;
  SHORT SpaceKeyAcceMenuMode = 0;
  SHORT AcceleratorEffect = 0;
  SHORT StretchGripParseMode = 0;
  USHORT SelectionPreview = 0;
  VARIANT_BOOL SelectAll_Layer = VARIANT_FALSE;
  VARIANT_BOOL SelectAll_LnType = VARIANT_FALSE;
  VARIANT_BOOL SelectAll_Color = VARIANT_FALSE;
  std::vector<Bstr> SelectIncludeTypes;
  std::vector<Bstr> SelectExcludeTypes;
  std::vector<ULONG> ExceptiveColors;
  std::vector<INT> SelectIncludeTypeIDs;
  std::vector<INT> SelectExcludeTypeIDs;
  SHORT SndRKeyEditMode = 0;
  VARIANT_BOOL PopupNoteWhenModifyLocalData = VARIANT_FALSE;
  SHORT WheelZoomMode = 0;
  SHORT IsGraphicDim = 0;

  // Only in memory.
  ULONG WindowAreaColor = 0;
  ULONG CrossingAreaColor = 0;
  ULONG GripHotColor = 0;
  ULONG GripHoverColor = 0;
  USHORT PreviewEffect = 0;
  USHORT PreviewFilter = 0;
  VARIANT_BOOL SelectionArea = VARIANT_FALSE;
  USHORT SelectionAreaOpacity = 0;
  VARIANT_BOOL SelectFirst = VARIANT_FALSE;
  VARIANT_BOOL PickDrag = VARIANT_FALSE;
  VARIANT_BOOL SelectWindow = VARIANT_FALSE;
  SHORT PickStyle = 0;
  VARIANT_BOOL GripOn = VARIANT_FALSE;
  VARIANT_BOOL GripBlock = VARIANT_FALSE;
  VARIANT_BOOL GripTips = VARIANT_FALSE;

  void AddIncludeType(TextView type) { SelectIncludeTypes.emplace_back(type); }
  void AddExculdeType(TextView type) { SelectExcludeTypes.emplace_back(type); }
  void AddExceptiveColor(ULONG colour) { ExceptiveColors.push_back(colour); }
  void AddIncludeTypeID(INT id) { SelectIncludeTypeIDs.push_back(id); }
  void AddExculdeTypeID(INT id) { SelectExcludeTypeIDs.push_back(id); }

  static std::span<const SettingsRow> Rows();
};
using CVeSelectCfgParser = Component<coclass::VeSelectCfgParser, SelectCfgFields>;

}  // namespace sab
