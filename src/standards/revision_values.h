#pragma once

#include "common/named_values.h"

namespace sab {

/// Takes every element below a revision that has no elements of its own. A value is named by the
/// path that leads to it from the revision, "LayoutDatas/LayoutData"; of several elements of one
/// name under the same parent the second is "LayoutData[2]", and so on. Values whose names do not
/// occur stay. What is nested deeper than 256 levels is passed over.
void ReadRevisionValues(const ConfigElement& revision, NamedValues& values);

}  // namespace sab
