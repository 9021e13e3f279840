#include "settings/sys_parameter_cfg_parser.h"

#include "formats/settings_system.h"

namespace sab {

std::span<const SettingsRow> SysParameterCfgFields::Rows() {
  using F = SysParameterCfgFields;
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
      Bind<"HideNewEntity", &F::IsHideNewEntity>, Bind<"MergeSameStyle", &F::IsMergeSameStyle>,
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

INT SysParameterCfgFields::MatchValueCount(INT key_index) const {
  return CountOf(EntryAt(match_rules.Entries(), key_index).values);
}

KeepsPlaces<Bstr, Bstr> SysParameterCfgFields::MatchRuleAt(INT key_index, INT value_index) const {
  const auto& [key, values] = EntryAt(match_rules.Entries(), key_index);
  return {key, EntryAt(values, value_index)};
}

KeepsPlaces<GUID, Bstr> SysParameterCfgFields::AutoLayerPair(INT index) const {
  const auto& [entity_class, layer] = EntryAt(automatic_layers.Pairs(), index);
  return {entity_class, layer};
}

KeepsPlaces<ULONG_PTR> SysParameterCfgFields::RetainStyleInfo(INT type) const noexcept {
  if (!RetainedStyles::IsType(type)) return {};
  return reinterpret_cast<ULONG_PTR>(&retained_styles.OfType(type));
}

void SysParameterCfgFields::SetRetainStyleInfo(INT type, const Address& address) {
  if (!RetainedStyles::IsType(type)) return;
  const auto* const info = reinterpret_cast<const VeRetainStyleInfo*>(address.value);
  if (info && address.is_from_script && !retained_styles.IsOneOfThese(info)) {
    throw ComError(E_INVALIDARG,
                   "A number is no list of style names: a script can pass on only what "
                   "GetRetainStyleInfo of the same object has given.");
  }
  if (!info || (info->count > 0 && !info->names)) throw ComError(E_POINTER);
  retained_styles.Replace(type, *info);
}

KeepsPlaces<Bstr, Bstr> SysParameterCfgFields::VisualStylePair(INT index) const {
  const auto& [id, name] = EntryAt(visual_styles.Pairs(), index);
  return {id, name};
}

}  // namespace sab
