#pragma once

#include <sabxml/com.h>

#include <map>
#include <string>

namespace sab::testing {

/// Everything that a type library tells, a text for each type by its name; that of the library
/// itself is "".
std::map<std::string, std::string> TextsOf(ITypeLib& library);

}  // namespace sab::testing
