#pragma once

#include "check/reporter.h"

namespace sab::check {

/// Keys of a user interface that two commands, tabs or items of a menu share.
void CheckKeys(Reporter& reporter, project::FileIndex file);

}  // namespace sab::check
