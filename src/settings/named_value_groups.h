#pragma once

#include "settings/named_values_parser.h"

namespace sab {

using CVeDWGInterfaceCfgParser = NamedValuesParser<coclass::VeDWGInterfaceCfgParser>;
using CVeFileAttributeCfgParser = NamedValuesParser<coclass::VeFileAttributeCfgParser>;
using CVeProductCfgParser = NamedValuesParser<coclass::VeProductCfgParser>;
using CVeSmartPosCfgParser = NamedValuesParser<coclass::VeSmartPosCfgParser>;
using CVeSmartPosParaParser = NamedValuesParser<coclass::VeSmartPosParaParser>;
using CVeBomcfgParser = NamedValuesParser<coclass::VeBomcfgParser>;
using CVeStdMgrCfgParser = NamedValuesParser<coclass::VeStdMgrCfgParser>;
using CVeCustomPTParser = NamedValuesParser<coclass::VeCustomPTParser>;

/// Lines of projected views.
class CVeProjectionCfgParser : public NamedValuesParser<coclass::VeProjectionCfgParser> {
 public:
  /// A value as a kind of line. @return E_INVALIDARG where it is none
  HRESULT STDMETHODCALLTYPE get_LineType(BSTR i_bsName, ProjectionLineType* pVal) override;
  HRESULT STDMETHODCALLTYPE put_LineType(BSTR i_bsName, ProjectionLineType newVal) override;
};

}  // namespace sab
