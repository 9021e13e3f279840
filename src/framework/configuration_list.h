#pragma once

#include <SabXmlParser.h>

#include "coclasses.h"
#include "common/config_document.h"
#include "server/owned_object.h"

namespace sab {

/// Appends an entry for each "Configuration" child whose "CLSID" is the text of a class identifier.
/// Applications and modules list their configuration pages in the same way. Raises ComError for an
/// entry or a list that cannot be created.
/// @param configurations none where the file has no list
void ReadConfigurations(const ConfigElement& configurations,
                        OwnedObject<coclass::VePrsConfigColl>& list);

}  // namespace sab
