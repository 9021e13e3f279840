#pragma once

#include "base/text.h"

namespace sab {

/// Full path of the library that this code is part of. Raises ComError.
Text ModulePath();

/// Whether two full paths lead to the same file.
bool IsSamePath(const Text& a, const Text& b);

}  // namespace sab
