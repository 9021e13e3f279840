#pragma once

#include "framework/descriptor_text.h"
#include "object/component.h"

namespace sab {

/// Reads an environment descriptor: a working environment of a module with its user-interface file,
/// its first panel and command, and its command descriptors.
struct EnvParserFields {
  Bstr ConfigurationPath;
  NeededOrNullText EnvID;
  NeededText UiPath;
  DescriptorText DefaultPanel;
  NeededText DefaultCmd;
  StringList CmdPaths;

  void GenerateEnv();
};

class CVeEnvParser : public Component<coclass::VeEnvParser, EnvParserFields> {
 public:
  /// Hosts rely on this: without a default command there is no default panel either.
  HRESULT STDMETHODCALLTYPE GetDefaultPanel(BSTR* pDefaultPanel) override;
};

}  // namespace sab
