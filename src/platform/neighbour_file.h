#pragma once

#include "base/text.h"

namespace sab {

/// The name of a file in the folder of another one. On Windows that is what precedes the
/// last backslash, then "\" and the name: beside a file without a folder it is in the root of
/// the current drive. Elsewhere a slash separates as well, and beside a file without a folder it
/// is in the current folder.
Text NeighbourFile(TextView file, TextView name);

}  // namespace sab
