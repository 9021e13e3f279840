#pragma once

#include <string_view>

#include "common/config_document.h"
#include "common/string_list.h"

namespace sab {

/// Appends the text of each "Path" inside each child of that name, as it stands, in document order;
/// empty ones are skipped. This is how a descriptor names the descriptors below it.
void ReadPaths(const ConfigElement& container, std::string_view child_name, StringList& paths);

}  // namespace sab
