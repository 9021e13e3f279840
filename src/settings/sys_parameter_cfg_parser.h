#pragma once

#include "automation/takes_addresses.h"
#include "settings/automatic_layers.h"
#include "settings/match_rules.h"
#include "settings/retained_styles.h"
#include "settings/settings_parser.h"
#include "settings/visual_styles.h"

namespace sab {

struct SysParameterCfgFields {
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
  VARIANT_BOOL merges_same_style = VARIANT_TRUE;
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

  static std::span<const SettingsRow> Rows();
};

/// The host's general options. Positions are counted from 0; one outside its list is E_INVALIDARG
/// and leaves the places of the results alone.
class CVeSysParameterCfgParser
    : public TakesAddresses<
          SettingsParser<coclass::VeSysParameterCfgParser, SysParameterCfgFields>> {
 public:
  /// Starts with the automatic layers of drafting.
  CVeSysParameterCfgParser();

  HRESULT STDMETHODCALLTYPE get_MatchKeyCount(INT* o_iKeyCount) override;
  HRESULT STDMETHODCALLTYPE get_MatchValueCount(INT i_iKeyNum, INT* o_iValueCount) override;
  HRESULT STDMETHODCALLTYPE get_MatchRuleAt(INT i_iKeyIndex, INT i_iValueIndex, BSTR* o_bsKey,
                                            BSTR* o_bsValue) override;
  HRESULT STDMETHODCALLTYPE InsertMatchRule(BSTR i_bsKey, BSTR i_bsValue) override;
  HRESULT STDMETHODCALLTYPE DelMatchRule(BSTR i_bsKey, BSTR i_bsValue) override;
  HRESULT STDMETHODCALLTYPE RemoveAllMatchRule() override;

  HRESULT STDMETHODCALLTYPE AddAutoLayerPair(GUID i_idObj, BSTR i_bsLayerName) override;
  HRESULT STDMETHODCALLTYPE GetAutoLayerPairCount(INT* o_iCount) override;
  HRESULT STDMETHODCALLTYPE GetAutoLayerPair(INT iCount, GUID* o_pID,
                                             BSTR* o_pbsLayerName) override;
  HRESULT STDMETHODCALLTYPE ClearAutoLayerPair() override;

  /// A type that there is not leaves the handle alone; that is no error.
  HRESULT STDMETHODCALLTYPE GetRetainStyleInfo(INT i_iStyleType, ULONG_PTR* o_spStyleInfo) override;
  HRESULT STDMETHODCALLTYPE SetRetainStyleInfo(INT i_iStyleType, ULONG_PTR i_pStyleInfo) override;

  HRESULT STDMETHODCALLTYPE GetIsMergeSameStyle(VARIANT_BOOL* o_pbVal) override;
  HRESULT STDMETHODCALLTYPE SetIsMergeSameStyle(VARIANT_BOOL i_vbVal) override;

  HRESULT STDMETHODCALLTYPE GetVisualStylePairCount(INT* pVal) override;
  HRESULT STDMETHODCALLTYPE AddVisualStylePair(BSTR i_bsVisualStyleID,
                                               BSTR i_bsVisualStyleName) override;
  HRESULT STDMETHODCALLTYPE GetVisualStylePair(INT iIndex, BSTR* o_pbsVisualStyleID,
                                               BSTR* o_pbsVisualStyleName) override;
};

}  // namespace sab
