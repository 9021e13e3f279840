#pragma once

#include <sabxml/com.h>

#include <functional>

#include "sabcom/hive.h"

namespace sabcom {

/// Runs a body with all that the registry says, and the number of that state; one at a time. What
/// the body raises becomes the code of a failure.
LSTATUS ReadRegistry(const std::function<void(Key& tree, ULONGLONG generation)>& body) noexcept;

}  // namespace sabcom
