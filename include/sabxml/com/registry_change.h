#pragma once

#include "registry.h"

// Several writes to the registry as one step; this runtime's own.

extern "C" {
/// Makes all that this thread writes until the matching end one step on the file; meanwhile other
/// threads and processes wait.
LSTATUS SabComBeginRegistryChange();
/// @param keep FALSE takes everything back
/// @return why nothing was written; the change is over then as well
LSTATUS SabComEndRegistryChange(BOOL keep);
}
