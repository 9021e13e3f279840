#pragma once

#include "common/string_list.h"
#include "framework/text_getters.h"
#include "server/owned_object.h"

namespace sab {

struct ModuleParserFields {
  Bstr ConfigurationPath;
  Bstr ModuleID;
  Bstr TmplID;
  StringList EnvPaths;
  OwnedObject<coclass::VePrsConfigColl> Configurations;
  Bstr ModuleTitle;
  Bstr Description;
  Bstr UiStateObjCLSID;
  Bstr CLSID;
};

/// Reads a module descriptor: a functional module of the host with its environment descriptors and
/// configuration pages.
class CVeModuleParser : public TextGetters<coclass::VeModuleParser, ModuleParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateModule() override;

  // clang-format off
  HRESULT STDMETHODCALLTYPE GetModuleID(BSTR* pModuleID) override { return CopyText(fields.ModuleID, pModuleID); }
  HRESULT STDMETHODCALLTYPE GetTmplID(BSTR* pTmplID) override { return CopyText(fields.TmplID, pTmplID); }
  HRESULT STDMETHODCALLTYPE GetEnvPaths(SAFEARRAY** o_ppEnvPaths) override { return Reported(fields.EnvPaths.CopyTo(o_ppEnvPaths)); }
  HRESULT STDMETHODCALLTYPE GetConfigurations(IVePrsConfigColl** o_ppConfigurations) override { return Reported(GetField(fields.Configurations, o_ppConfigurations)); }
  HRESULT STDMETHODCALLTYPE GetModuleTitle(BSTR* o_pbsModTitle) override { return CopyText(fields.ModuleTitle, o_pbsModTitle); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* o_pbsDescription) override { return CopyText(fields.Description, o_pbsDescription); }
  HRESULT STDMETHODCALLTYPE GetUiStateObjCLSID(BSTR* o_pbsUiStateObjCLSID) override { return CopyText(fields.UiStateObjCLSID, o_pbsUiStateObjCLSID); }
  HRESULT STDMETHODCALLTYPE GetCLSID(BSTR* o_pbsCLSID) override { return o_pbsCLSID ? CopyText(fields.CLSID, o_pbsCLSID) : Reported(E_POINTER); }
  // clang-format on
};

}  // namespace sab
