#pragma once

#include "common/string_list.h"
#include "framework/text_getters.h"

namespace sab {

struct EnvParserFields {
  Bstr ConfigurationPath;
  Bstr EnvID;
  Bstr UiPath;
  Bstr DefaultPanel;
  Bstr DefaultCmd;
  StringList CmdPaths;
};

/// Reads an environment descriptor: a working environment of a module with its user-interface file,
/// its first panel and command, and its command descriptors.
class CVeEnvParser : public TextGetters<coclass::VeEnvParser, EnvParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateEnv() override;

  HRESULT STDMETHODCALLTYPE GetEnvID(BSTR* pEnvID) override {
    if (pEnvID) *pEnvID = nullptr;
    return CopyUnlessEmpty(fields.EnvID, pEnvID);
  }
  HRESULT STDMETHODCALLTYPE GetUiPath(BSTR* pUiPath) override {
    return CopyUnlessEmpty(fields.UiPath, pUiPath);
  }
  HRESULT STDMETHODCALLTYPE GetCmdPaths(SAFEARRAY** o_pCmdPaths) override {
    return Reported(fields.CmdPaths.CopyTo(o_pCmdPaths));
  }
  HRESULT STDMETHODCALLTYPE GetDefaultCmd(BSTR* pDefaultCmd) override {
    return CopyUnlessEmpty(fields.DefaultCmd, pDefaultCmd);
  }
  /// Hosts rely on this: without a default command there is no default panel either.
  HRESULT STDMETHODCALLTYPE GetDefaultPanel(BSTR* pDefaultPanel) override;

 private:
  // E_FAIL for a null place and for an empty value; the place is untouched then.
  static HRESULT CopyUnlessEmpty(const Bstr& text, BSTR* out);
};

}  // namespace sab
