#include "settings/sys_parameter_cfg_parser.h"

#include "formats/settings_system.h"
#include "settings/indexes.h"

namespace sab {
namespace {

const VeRetainStyleInfo* InfoOf(ULONG_PTR handle) {
  return reinterpret_cast<const VeRetainStyleInfo*>(handle);
}

// Hands out two texts or none.
HRESULT HandOut(const Bstr& first, BSTR* first_out, const Bstr& second, BSTR* second_out) {
  if (!first_out || !second_out) return E_POINTER;
  Bstr first_copy(first);
  Bstr second_copy(second);
  *first_out = first_copy.Detach();
  *second_out = second_copy.Detach();
  return S_OK;
}

}  // namespace

using F = SysParameterCfgFields;

std::span<const SettingsRow> SysParameterCfgFields::Rows() {
  static constexpr auto kRows = BindSettings<
      formats::kSystemSettings, Bind<"TempPrefix", &F::TempPrefix>,
      Bind<"CmdInputHistoryMax", &F::CmdInputHistoryMax>, Bind<"MaxReal", &F::MaxReal>,
      Bind<"FilePolicy", &F::FilePolicy>, Bind<"FilePathNamePolicy", &F::FilePathNamePolicy>,
      Bind<"DefSaveFormat", &F::DefSaveFormat>, Bind<"GenBakupFile", &F::GenBakupFile>,
      Bind<"UpdateView", &F::UpdateView>, Bind<"DefChsFont", &F::DefChsFont>,
      Bind<"DefWestFont", &F::DefWestFont>, Bind<"DefFileName", &F::DefFileName>,
      Bind<"SaveStep", &F::SaveStep>, Bind<"UndoRedoTimes", &F::UndoRedoTimes>,
      Bind<"MergeStyle", &F::MergeStyle>, Bind<"MergeBlock", &F::MergeBlock>,
      Bind<"MergeScale", &F::MergeScale>, Bind<"AutoLayer", &F::AutoLayer>,
      Bind<"AutoNameBlock", &F::AutoNameBlock>, Bind<"SymbolOfDetailView", &F::SymbolOfDetailView>,
      Bind<"HideNewEntity", &F::IsHideNewEntity>, Bind<"MergeSameStyle", &F::merges_same_style>,
      Bind<"RetainStyle", &F::retained_styles>, Bind<"AllMatchRule", &F::match_rules>,
      Bind<"ShowCfgStyleAtStart", &F::ShowCfgStyleAtStart>, Bind<"OLEExport", &F::OLEExport>,
      Bind<"UseDefTitleTpl", &F::UseDefTitleTpl>, Bind<"UseDefDKLTpl", &F::UseDefDKLTpl>,
      Bind<"UseDefBKLTpl", &F::UseDefBKLTpl>, Bind<"DefTitleTpl", &F::DefTitleTpl>,
      Bind<"DefDKLTpl", &F::DefDKLTpl>, Bind<"DefBKLTpl", &F::DefBKLTpl>,
      Bind<"ParaTableNameStrategy", &F::ParaTableNameStrategy>,
      Bind<"DefTitleName", &F::DefTitleName>, Bind<"DefDKLName", &F::DefDKLName>,
      Bind<"DefBKLName", &F::DefBKLName>, Bind<"AllAutoLayerRule", &F::automatic_layers>,
      Bind<"IsOleExpByOpClr", &F::IsOleExpByOpClr>, Bind<"IsChangeImage", &F::IsChangeImage>,
      Bind<"IsCheckDimDispData", &F::IsCheckDimDispData>, Bind<"DefStandard", &F::DefStandard>,
      Bind<"CurStandard", &F::CurStandard>,
      Bind<"IsSymPrevDlgComBoReadOnly", &F::SymPrevComboCtlProp>,
      Bind<"ProductVisualStyles", &F::visual_styles>, Bind<"DefVisualStyleID", &F::DefVisualStyle>,
      Bind<"WeldDialogStyle", &F::WeldDialogStyle>, Bind<"ToleDialogStyle", &F::ToleDialogStyle>,
      Bind<"PDFOSnapFlag", &F::PDFOSnapFlag>>();
  return kRows;
}

CVeSysParameterCfgParser::CVeSysParameterCfgParser() { fields.automatic_layers.Seed(); }

// --- Match rules ---

HRESULT CVeSysParameterCfgParser::get_MatchKeyCount(INT* o_iKeyCount) {
  return Reported(GetField(CountOf(fields.match_rules.Entries()), o_iKeyCount));
}

HRESULT CVeSysParameterCfgParser::get_MatchValueCount(INT i_iKeyNum, INT* o_iValueCount) {
  if (o_iValueCount) *o_iValueCount = 0;
  return Guarded([&] {
    return GetField(CountOf(EntryAt(fields.match_rules.Entries(), i_iKeyNum).values),
                    o_iValueCount);
  });
}

HRESULT CVeSysParameterCfgParser::get_MatchRuleAt(INT i_iKeyIndex, INT i_iValueIndex, BSTR* o_bsKey,
                                                  BSTR* o_bsValue) {
  return Guarded([&] {
    const auto& [key, values] = EntryAt(fields.match_rules.Entries(), i_iKeyIndex);
    return HandOut(key, o_bsKey, EntryAt(values, i_iValueIndex), o_bsValue);
  });
}

HRESULT CVeSysParameterCfgParser::InsertMatchRule(BSTR i_bsKey, BSTR i_bsValue) {
  return Guarded(
      [&] { fields.match_rules.Insert(Bstr::ViewOf(i_bsKey), Bstr::ViewOf(i_bsValue)); });
}

HRESULT CVeSysParameterCfgParser::DelMatchRule(BSTR i_bsKey, BSTR i_bsValue) {
  return Guarded(
      [&] { fields.match_rules.Remove(Bstr::ViewOf(i_bsKey), Bstr::ViewOf(i_bsValue)); });
}

HRESULT CVeSysParameterCfgParser::RemoveAllMatchRule() {
  fields.match_rules.Clear();
  return S_OK;
}

// --- Automatic layers ---

HRESULT CVeSysParameterCfgParser::AddAutoLayerPair(GUID i_idObj, BSTR i_bsLayerName) {
  return Guarded([&] { fields.automatic_layers.Add(i_idObj, Bstr::ViewOf(i_bsLayerName)); });
}

HRESULT CVeSysParameterCfgParser::GetAutoLayerPairCount(INT* o_iCount) {
  return Reported(GetField(CountOf(fields.automatic_layers.Pairs()), o_iCount));
}

HRESULT CVeSysParameterCfgParser::GetAutoLayerPair(INT iCount, GUID* o_pID, BSTR* o_pbsLayerName) {
  return Guarded([&] {
    const auto& [entity_class, layer] = EntryAt(fields.automatic_layers.Pairs(), iCount);
    if (!o_pID) return E_POINTER;
    const HRESULT result = GetField(layer, o_pbsLayerName);
    if (SUCCEEDED(result)) *o_pID = entity_class;
    return result;
  });
}

HRESULT CVeSysParameterCfgParser::ClearAutoLayerPair() {
  fields.automatic_layers.Clear();
  return S_OK;
}

// --- Retained styles ---

HRESULT CVeSysParameterCfgParser::GetRetainStyleInfo(INT i_iStyleType, ULONG_PTR* o_spStyleInfo) {
  if (!o_spStyleInfo) return Reported(E_POINTER);
  if (RetainedStyles::IsType(i_iStyleType)) {
    *o_spStyleInfo = reinterpret_cast<ULONG_PTR>(&fields.retained_styles.OfType(i_iStyleType));
  }
  return S_OK;
}

HRESULT CVeSysParameterCfgParser::SetRetainStyleInfo(INT i_iStyleType, ULONG_PTR i_pStyleInfo) {
  if (!RetainedStyles::IsType(i_iStyleType)) return S_OK;
  const VeRetainStyleInfo* const info = InfoOf(i_pStyleInfo);
  if (info && IsLateBound() && !fields.retained_styles.IsOneOfThese(info)) {
    return Fail(E_INVALIDARG,
                "A number is no list of style names: a script can pass on only what "
                "GetRetainStyleInfo of the same object has given.");
  }
  if (!info || (info->count > 0 && !info->names)) return Reported(E_POINTER);
  return Guarded([&] { fields.retained_styles.Replace(i_iStyleType, *info); });
}

// --- Merging of styles ---

HRESULT CVeSysParameterCfgParser::GetIsMergeSameStyle(VARIANT_BOOL* o_pbVal) {
  return Reported(GetField(fields.merges_same_style, o_pbVal));
}

HRESULT CVeSysParameterCfgParser::SetIsMergeSameStyle(VARIANT_BOOL i_vbVal) {
  return Reported(PutField(fields.merges_same_style, i_vbVal));
}

// --- Visual styles ---

HRESULT CVeSysParameterCfgParser::GetVisualStylePairCount(INT* pVal) {
  return Reported(GetField(CountOf(fields.visual_styles.Pairs()), pVal));
}

HRESULT CVeSysParameterCfgParser::AddVisualStylePair(BSTR i_bsVisualStyleID,
                                                     BSTR i_bsVisualStyleName) {
  return Guarded([&] {
    fields.visual_styles.Add(Bstr::ViewOf(i_bsVisualStyleID), Bstr::ViewOf(i_bsVisualStyleName));
  });
}

HRESULT CVeSysParameterCfgParser::GetVisualStylePair(INT iIndex, BSTR* o_pbsVisualStyleID,
                                                     BSTR* o_pbsVisualStyleName) {
  return Guarded([&] {
    const auto& pair = EntryAt(fields.visual_styles.Pairs(), iIndex);
    return HandOut(pair.id, o_pbsVisualStyleID, pair.name, o_pbsVisualStyleName);
  });
}

}  // namespace sab
