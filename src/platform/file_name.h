#pragma once

#include <optional>
#include <string>

#include "base/text.h"

namespace sab {

// What both platforms do alike with the name of a file before they ask the system.

/// Why a name cannot be that of a file, in words; null if it can. Refused are the empty name, a
/// name with a NUL character and network addresses ("http:", "https:", "ftp:"), from which nothing
/// is ever read.
const char* ReasonAgainstName(TextView name);

/// The path, in UTF-8, of a "file:" address with its %XX sequences decoded; nothing for any other
/// name. "file:///a%20b" gives "/a b"; the host name "localhost" is left out.
std::optional<std::string> PathOfFileAddress(TextView name);

}  // namespace sab
