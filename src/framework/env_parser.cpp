#include "framework/env_parser.h"

#include "formats/environment.h"
#include "framework/make.h"

namespace sab {

void EnvParserFields::GenerateEnv() {
  using F = EnvParserFields;
  using Elements = BoundPaths<formats::kEnvironmentDocument, Bind<"Identify", &F::EnvID>,
                              Bind<"UIPath", &F::UiPath>, Bind<"DefaultPanel", &F::DefaultPanel>,
                              Bind<"DefaultCmd", &F::DefaultCmd>,
                              Within<"Commands", Within<"Command", Bind<"Path", &F::CmdPaths>>>>;
  ReadDescriptor<Elements>(*this);
}

HRESULT CVeEnvParser::GetDefaultPanel(BSTR* pDefaultPanel) {
  if (pDefaultPanel) *pDefaultPanel = nullptr;
  if (pDefaultPanel && fields.DefaultCmd.IsEmpty()) {
    return Fail(E_FAIL, "There is no default panel without a default command.");
  }
  if (pDefaultPanel && fields.DefaultPanel.IsEmpty()) return S_OK;
  return Edge::GetDefaultPanel(pDefaultPanel);
}

}  // namespace sab
