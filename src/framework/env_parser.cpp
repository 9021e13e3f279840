#include "framework/env_parser.h"

#include "formats/environment.h"
#include "framework/make.h"

namespace sab {

using F = EnvParserFields;

HRESULT CVeEnvParser::GenerateEnv() {
  using Elements = BoundPaths<formats::kEnvironmentDocument, Bind<"Identify", &F::EnvID>,
                              Bind<"UIPath", &F::UiPath>, Bind<"DefaultPanel", &F::DefaultPanel>,
                              Bind<"DefaultCmd", &F::DefaultCmd>,
                              Within<"Commands", Within<"Command", Bind<"Path", &F::CmdPaths>>>>;
  return Guarded([this] { ReadDescriptor<Elements>(fields); });
}

HRESULT CVeEnvParser::GetDefaultPanel(BSTR* pDefaultPanel) {
  if (pDefaultPanel && fields.DefaultCmd.IsEmpty()) {
    *pDefaultPanel = nullptr;
    return Fail(E_FAIL, "There is no default panel without a default command.");
  }
  if (pDefaultPanel && fields.DefaultPanel.IsEmpty()) {
    *pDefaultPanel = nullptr;
    return S_OK;
  }
  return CopyText(fields.DefaultPanel, pDefaultPanel);
}

HRESULT CVeEnvParser::CopyUnlessEmpty(const Bstr& text, BSTR* out) {
  if (out && text.IsEmpty()) return Fail(E_FAIL, "The value is not set: generate the descriptor.");
  return CopyText(text, out);
}

}  // namespace sab
