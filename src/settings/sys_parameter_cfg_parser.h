#pragma once

#include "automation/takes_addresses.h"
#include "common/indexes.h"
#include "settings/automatic_layers.h"
#include "settings/match_rules.h"
#include "settings/retained_styles.h"
#include "settings/settings_parser.h"
#include "settings/visual_styles.h"

namespace sab {

/// The host's general options. Positions are counted from 0; one outside its list is E_INVALIDARG.
struct SysParameterCfgFields : Settings<SysParameterCfgFields> {
  Bstr TempPrefix;
  SHORT CmdInputHistoryMax = 0;
  double MaxReal = 0;
  int FilePolicy = 0;
  VEFILETITLEPOLICY FilePathNamePolicy = VEFILETITLEPOLICY_FILENAME;
  SHORT DefSaveFormat = 0;
  VARIANT_BOOL GenBakupFile = VARIANT_FALSE;
  VARIANT_BOOL UpdateView = VARIANT_FALSE;
  Bstr DefChsFont;
  Bstr DefWestFont;
  Bstr DefFileName;
  SHORT SaveStep = 0;
  SHORT UndoRedoTimes = 0;
  VARIANT_BOOL MergeStyle = VARIANT_FALSE;
  VARIANT_BOOL MergeBlock = VARIANT_FALSE;
  VARIANT_BOOL MergeScale = VARIANT_FALSE;
  VARIANT_BOOL AutoLayer = VARIANT_FALSE;
  VARIANT_BOOL AutoNameBlock = VARIANT_FALSE;
  int SymbolOfDetailView = 0;
  VARIANT_BOOL IsHideNewEntity = VARIANT_TRUE;
  VARIANT_BOOL IsMergeSameStyle = VARIANT_TRUE;
  RetainedStyles retained_styles;
  MatchRules match_rules;
  VARIANT_BOOL ShowCfgStyleAtStart = VARIANT_FALSE;
  int OLEExport = 0;
  VARIANT_BOOL UseDefTitleTpl = VARIANT_FALSE;
  VARIANT_BOOL UseDefDKLTpl = VARIANT_FALSE;
  VARIANT_BOOL UseDefBKLTpl = VARIANT_FALSE;
  Bstr DefTitleTpl;
  Bstr DefDKLTpl;
  Bstr DefBKLTpl;
  int ParaTableNameStrategy = 0;
  Bstr DefTitleName;
  Bstr DefDKLName;
  Bstr DefBKLName;
  AutomaticLayers automatic_layers;
  VARIANT_BOOL IsOleExpByOpClr = VARIANT_FALSE;
  VARIANT_BOOL IsChangeImage = VARIANT_FALSE;
  VARIANT_BOOL IsCheckDimDispData = VARIANT_TRUE;
  int DefStandard = 0;
  int CurStandard = 0;
  VARIANT_BOOL SymPrevComboCtlProp = VARIANT_FALSE;
  VisualStyles visual_styles;
  Bstr DefVisualStyle;
  SHORT WeldDialogStyle = 3;
  SHORT ToleDialogStyle = 3;
  VARIANT_BOOL PDFOSnapFlag = VARIANT_FALSE;

  INT MatchKeyCount() const noexcept { return CountOf(match_rules.Entries()); }
  INT MatchValueCount(INT key_index) const;
  KeepsPlaces<Bstr, Bstr> MatchRuleAt(INT key_index, INT value_index) const;
  void InsertMatchRule(TextView key, TextView value) { match_rules.Insert(key, value); }
  void DelMatchRule(TextView key, TextView value) { match_rules.Remove(key, value); }
  void RemoveAllMatchRule() noexcept { match_rules.Clear(); }

  void AddAutoLayerPair(const GUID& entity_class, TextView layer) {
    automatic_layers.Add(entity_class, layer);
  }
  INT AutoLayerPairCount() const noexcept { return CountOf(automatic_layers.Pairs()); }
  KeepsPlaces<GUID, Bstr> AutoLayerPair(INT index) const;
  void ClearAutoLayerPair() noexcept { automatic_layers.Clear(); }

  /// Nothing, which is no error, for an unknown type.
  KeepsPlaces<ULONG_PTR> RetainStyleInfo(INT type) const noexcept;
  /// @param info of a VeRetainStyleInfo
  void SetRetainStyleInfo(INT type, const Address& info);

  INT VisualStylePairCount() const noexcept { return CountOf(visual_styles.Pairs()); }
  void AddVisualStylePair(TextView id, TextView name) { visual_styles.Add(id, name); }
  KeepsPlaces<Bstr, Bstr> VisualStylePair(INT index) const;

  static std::span<const SettingsRow> Rows();
};

class CVeSysParameterCfgParser
    : public Component<coclass::VeSysParameterCfgParser, SysParameterCfgFields> {
 public:
  /// Starts with the automatic layers of drafting.
  CVeSysParameterCfgParser() { fields.automatic_layers.Seed(); }
};

}  // namespace sab
