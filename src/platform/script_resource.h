#pragma once

#include <string_view>

namespace sab {

/// Numbers of the registration scripts among the library's resources of the type "REGISTRY".
enum class ScriptResource { kModule = 101, kClassWithProgId = 102, kClassWithoutProgId = 103 };

/// The text of a script, as long as the library is loaded. Raises ComError.
std::string_view LoadScript(ScriptResource script);

}  // namespace sab
