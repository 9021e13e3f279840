#pragma once

#include <SabXmlParser.h>

#include "formats/configuration.h"
#include "framework/element_objects.h"
#include "framework/make.h"
#include "generated/coclasses.h"

namespace sab {

/// A page of the options of an application or a module.
struct Configuration : Bound<formats::kConfiguration, Bind<"CLSID", &IVePrsConfig::put_CLSID>,
                             Bind<"Path", &IVePrsConfig::put_Path>,
                             Bind<"PropertyPageCLSID", &IVePrsConfig::put_PropertyPageCLSID>,
                             Bind<"LocalName", &IVePrsConfig::put_LocalName>> {};

/// @tparam kList where the pages are kept
template <auto kList>
using ConfigurationPages =
    Within<"Configurations",
           Each<"Configuration", New<coclass::VePrsConfig>, kList, Configuration>>;

}  // namespace sab
