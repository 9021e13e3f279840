#pragma once

#include "base/text.h"

namespace sab {

/// The name of a file that stands beside another one. On Windows that is what stands before the
/// last backslash, then "\" and the name: beside a file without a folder it stands in the root of
/// the current drive. Elsewhere a slash separates as well, and beside a file without a folder it
/// stands in the current folder.
Text NeighbourFile(TextView file, TextView name);

}  // namespace sab
