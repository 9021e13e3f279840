#pragma once

#include "registry.h"

// Changes of the registry: several writes as one step, and whether there was one. This runtime's
// own.

extern "C" {
/// Makes all that this thread writes until the matching end one step on the file; meanwhile other
/// threads and processes wait.
LSTATUS SabComBeginRegistryChange();
/// @param keep FALSE takes everything back
/// @return why nothing was written; the change is over then as well
LSTATUS SabComEndRegistryChange(BOOL keep);
/// A number of what the registry says: as long as it is the same, no process has changed anything.
/// Looks at the status of the file, and reads the file only after a change.
/// @return 0 if the registry cannot be read; otherwise never what an earlier state had
ULONGLONG SabComRegistryGeneration();
}
