#pragma once

#include "base/text.h"

namespace sab {

/// Full path of the library that this code is part of. Raises ComError.
Text ModulePath();

}  // namespace sab
