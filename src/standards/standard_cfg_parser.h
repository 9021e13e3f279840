#pragma once

#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

/// Reads the catalogue of drafting standards. The file is never written.
struct StandardCfgFields {
  OwnedObject<coclass::VeStandardParserColl> StandardParserColl;

  /// Appends to the standards; those read before a failure stay. Raises ComError:
  /// kDocumentNotLoaded for a file that cannot be read; kInvalidCatalogue for one that is no
  /// catalogue.
  void Load(TextView path);
};
using CVeStandardCfgParser = Component<coclass::VeStandardCfgParser, StandardCfgFields>;

}  // namespace sab
