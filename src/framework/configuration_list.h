#pragma once

#include <SabXmlParser.h>

#include "common/config_document.h"
#include "server/component_creator.h"

namespace sab {

/// Appends an entry for each "Configuration" child whose "CLSID" is the text of a class identifier.
/// Applications and modules list their configuration pages in the same way.
void ReadConfigurations(const ConfigElement& configurations, ComponentCreator& creator,
                        IVePrsConfigColl& list);

}  // namespace sab
