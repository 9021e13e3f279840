#include "framework/env_parser.h"

#include "base/com_error.h"
#include "framework/descriptor_reader.h"
#include "framework/path_list.h"

namespace sab {

HRESULT CVeEnvParser::GenerateEnv() {
  return Guarded([this] {
    DescriptorReader file(fields.ConfigurationPath);

    file.ReadRequired("Environment/Identify", environment_id_, kInvalidEnvironment);
    file.ReadRequired("Environment/UIPath", ui_path_, kInvalidEnvironment);
    file.Read("Environment/DefaultPanel", default_panel_);
    file.ReadRequired("Environment/DefaultCmd", default_command_, kInvalidEnvironment);

    const ConfigElement commands = file.Find("Environment/Commands");
    if (!commands) return;
    ReadPaths(commands, "Command", command_paths_);
    if (command_paths_.IsEmpty()) {
      file.Fail(kInvalidEnvironment, "Environment/Commands",
                "names no command file: give it a Command with a Path, or leave it out");
    }
  });
}

HRESULT CVeEnvParser::GetDefaultPanel(BSTR* pDefaultPanel) {
  if (pDefaultPanel && default_command_.IsEmpty()) {
    *pDefaultPanel = nullptr;
    return Fail(E_FAIL, "There is no default panel without a default command.");
  }
  if (pDefaultPanel && default_panel_.IsEmpty()) {
    *pDefaultPanel = nullptr;
    return S_OK;
  }
  return CopyText(default_panel_, pDefaultPanel);
}

HRESULT CVeEnvParser::CopyUnlessEmpty(const Bstr& text, BSTR* out) {
  if (out && text.IsEmpty()) return Fail(E_FAIL, "The value is not set: generate the descriptor.");
  return CopyText(text, out);
}

}  // namespace sab
