#pragma once

#include "common/string_list.h"
#include "framework/text_getters.h"

namespace sab {

struct EnvParserFields {
  Bstr ConfigurationPath;
};

/// Reads an environment descriptor: a working environment of a module with its user-interface file,
/// its first panel and command, and its command descriptors.
class CVeEnvParser : public TextGetters<coclass::VeEnvParser, EnvParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateEnv() override;

  HRESULT STDMETHODCALLTYPE GetEnvID(BSTR* pEnvID) override {
    if (pEnvID) *pEnvID = nullptr;
    return CopyUnlessEmpty(environment_id_, pEnvID);
  }
  HRESULT STDMETHODCALLTYPE GetUiPath(BSTR* pUiPath) override {
    return CopyUnlessEmpty(ui_path_, pUiPath);
  }
  HRESULT STDMETHODCALLTYPE GetCmdPaths(SAFEARRAY** o_pCmdPaths) override {
    return Reported(command_paths_.CopyTo(o_pCmdPaths));
  }
  HRESULT STDMETHODCALLTYPE GetDefaultCmd(BSTR* pDefaultCmd) override {
    return CopyUnlessEmpty(default_command_, pDefaultCmd);
  }
  /// Hosts rely on this: without a default command there is no default panel either.
  HRESULT STDMETHODCALLTYPE GetDefaultPanel(BSTR* pDefaultPanel) override;

 private:
  // E_FAIL for a null place and for an empty value; the place is untouched then.
  static HRESULT CopyUnlessEmpty(const Bstr& text, BSTR* out);

  Bstr environment_id_;
  Bstr ui_path_;
  Bstr default_panel_;
  Bstr default_command_;
  StringList command_paths_;
};

}  // namespace sab
