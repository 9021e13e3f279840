#include "platform/script_resource.h"

#include "generated/embedded_scripts.h"

namespace sab {

std::string_view LoadScript(ScriptResource script) {
  switch (script) {
    case ScriptResource::kModule:
      return kModuleScript;
    case ScriptResource::kClassWithProgId:
      return kClassWithProgIdScript;
    default:
      return kClassWithoutProgIdScript;
  }
}

}  // namespace sab
