#pragma once

#include "formats/rule.h"

namespace sab::formats {

inline constexpr Rule kConfiguration[] = {
    Guid("CLSID", "Class of the page").CompletesItemIfGuid(),
    Path("Path", "File of the page"),
    Guid("PropertyPageCLSID", "Class of the property page"),
    Text("LocalName", "Name that a user sees"),
};

/// Applications and modules list the pages of their options alike.
inline constexpr Rule kConfigurations[] = {
    Entry("Configuration", kConfiguration, "A page of the options"),
};

}  // namespace sab::formats
