#pragma once

#include <string>

#include "cli/host/type_description.h"

namespace sabxml::cli {

/// The definition of an interface in IDL, the members of those that it derives from in it, since
/// type information of automation has one level.
std::string IdlOfInterface(const ClassDescription& interface_);

/// The definition of a class, which names its interface.
std::string IdlOfClass(const ClassDescription& known);

}  // namespace sabxml::cli
