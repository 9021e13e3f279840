#pragma once

#include <vector>

#include "settings/list_array.h"
#include "settings/settings_parser.h"

namespace sab {

struct SelectCfgFields {
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
  VARIANT_BOOL selects_all_layers = VARIANT_FALSE;
  VARIANT_BOOL selects_all_line_types = VARIANT_FALSE;
  VARIANT_BOOL selects_all_colors = VARIANT_FALSE;
  std::vector<Bstr> included_types;
  std::vector<Bstr> excluded_types;
  std::vector<ULONG> excepted_colors;
  std::vector<INT> included_type_ids;
  std::vector<INT> excluded_type_ids;
  SHORT SndRKeyEditMode = 0;
  VARIANT_BOOL notes_change_of_local_data = VARIANT_FALSE;
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

  static std::span<const SettingsRow> Rows();
};

/// Selecting objects: pick box, grips, mouse and keyboard, and the selection filter.
class CVeSelectCfgParser : public SettingsParser<coclass::VeSelectCfgParser, SelectCfgFields> {
 public:
  // clang-format off
  HRESULT STDMETHODCALLTYPE AddIncludeType(BSTR i_bsType) override { return Append(fields.included_types, i_bsType); }
  HRESULT STDMETHODCALLTYPE AddExculdeType(BSTR i_bsType) override { return Append(fields.excluded_types, i_bsType); }
  HRESULT STDMETHODCALLTYPE AddExceptiveColor(ULONG i_ulColor) override { return Append(fields.excepted_colors, i_ulColor); }
  HRESULT STDMETHODCALLTYPE AddIncludeTypeID(INT i_iTypeID) override { return Append(fields.included_type_ids, i_iTypeID); }
  HRESULT STDMETHODCALLTYPE AddExculdeTypeID(INT i_iTypeID) override { return Append(fields.excluded_type_ids, i_iTypeID); }

  HRESULT STDMETHODCALLTYPE GetSelectIncludeTypes(SAFEARRAY** o_pTypes) override { return Reported(CopyToArray(fields.included_types, o_pTypes)); }
  HRESULT STDMETHODCALLTYPE GetSelectExcludeTypes(SAFEARRAY** o_pTypes) override { return Reported(CopyToArray(fields.excluded_types, o_pTypes)); }
  HRESULT STDMETHODCALLTYPE GetExceptiveColors(SAFEARRAY** o_pColors) override { return Reported(CopyToArray(fields.excepted_colors, o_pColors)); }
  HRESULT STDMETHODCALLTYPE GetSelectIncludeTypeIDs(SAFEARRAY** o_pTypeIDs) override { return Reported(CopyToArray(fields.included_type_ids, o_pTypeIDs)); }
  HRESULT STDMETHODCALLTYPE GetSelectExcludeTypeIDs(SAFEARRAY** o_pTypeIDs) override { return Reported(CopyToArray(fields.excluded_type_ids, o_pTypeIDs)); }

  HRESULT STDMETHODCALLTYPE SelectAll_Layer(VARIANT_BOOL i_vbVal) override { return Reported(PutField(fields.selects_all_layers, i_vbVal)); }
  HRESULT STDMETHODCALLTYPE SelectAll_LnType(VARIANT_BOOL i_vbVal) override { return Reported(PutField(fields.selects_all_line_types, i_vbVal)); }
  HRESULT STDMETHODCALLTYPE SelectAll_Color(VARIANT_BOOL i_vbVal) override { return Reported(PutField(fields.selects_all_colors, i_vbVal)); }
  HRESULT STDMETHODCALLTYPE PopupNoteWhenModifyLocalData(VARIANT_BOOL i_vbVal) override { return Reported(PutField(fields.notes_change_of_local_data, i_vbVal)); }

  HRESULT STDMETHODCALLTYPE IsSelectAll_Layer(VARIANT_BOOL* o_pbVal) override { return Reported(GetField(fields.selects_all_layers, o_pbVal)); }
  HRESULT STDMETHODCALLTYPE IsSelectAll_LnType(VARIANT_BOOL* o_pbVal) override { return Reported(GetField(fields.selects_all_line_types, o_pbVal)); }
  HRESULT STDMETHODCALLTYPE IsSelectAll_Color(VARIANT_BOOL* o_pbVal) override { return Reported(GetField(fields.selects_all_colors, o_pbVal)); }
  HRESULT STDMETHODCALLTYPE IsPopupNoteWhenModifyLocalData(VARIANT_BOOL* o_pbVal) override { return Reported(GetField(fields.notes_change_of_local_data, o_pbVal)); }
  // clang-format on

 private:
  static HRESULT Append(std::vector<Bstr>& list, BSTR text) {
    return Guarded([&] { list.emplace_back(Bstr::ViewOf(text)); });
  }
  template <class Number>
  static HRESULT Append(std::vector<Number>& list, Number number) {
    return Guarded([&] { list.push_back(number); });
  }
};

}  // namespace sab
