#pragma once

#include "common/string_list.h"
#include "framework/text_getters.h"
#include "server/owned_object.h"

namespace sab {

struct ModuleParserFields {
  Bstr ConfigurationPath;
};

/// Reads a module descriptor: a functional module of the host with its environment descriptors and
/// configuration pages.
class CVeModuleParser : public TextGetters<coclass::VeModuleParser, ModuleParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateModule() override;

  // clang-format off
  HRESULT STDMETHODCALLTYPE GetModuleID(BSTR* pModuleID) override { return CopyText(module_id_, pModuleID); }
  HRESULT STDMETHODCALLTYPE GetTmplID(BSTR* pTmplID) override { return CopyText(template_id_, pTmplID); }
  HRESULT STDMETHODCALLTYPE GetEnvPaths(SAFEARRAY** o_ppEnvPaths) override { return Reported(environment_paths_.CopyTo(o_ppEnvPaths)); }
  HRESULT STDMETHODCALLTYPE GetConfigurations(IVePrsConfigColl** o_ppConfigurations) override { return Reported(GetField(configurations_, o_ppConfigurations)); }
  HRESULT STDMETHODCALLTYPE GetModuleTitle(BSTR* o_pbsModTitle) override { return CopyText(title_, o_pbsModTitle); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* o_pbsDescription) override { return CopyText(description_, o_pbsDescription); }
  HRESULT STDMETHODCALLTYPE GetUiStateObjCLSID(BSTR* o_pbsUiStateObjCLSID) override { return CopyText(ui_state_object_clsid_, o_pbsUiStateObjCLSID); }
  HRESULT STDMETHODCALLTYPE GetCLSID(BSTR* o_pbsCLSID) override { return o_pbsCLSID ? CopyText(module_clsid_, o_pbsCLSID) : Reported(E_POINTER); }
  // clang-format on

 private:
  Bstr module_id_;
  Bstr template_id_;
  Bstr title_;
  Bstr description_;
  Bstr ui_state_object_clsid_;
  Bstr module_clsid_;
  StringList environment_paths_;
  OwnedObject<coclass::VePrsConfigColl> configurations_;
};

}  // namespace sab
