#pragma once

#include "common/collection.h"

namespace sab {

/// A configuration page of an application or a module.
struct PrsConfigFields {
  Bstr CLSID;
  Bstr Path;
  Bstr PropertyPageCLSID;
  Bstr LocalName;
};
using CVePrsConfig = Component<coclass::VePrsConfig, PrsConfigFields>;
using CVePrsConfigColl = Collection<coclass::VePrsConfigColl, IVePrsConfig>;

/// A keyboard accelerator of a command.
struct PrsAccelFields {
  Bstr Command;
  Bstr Key;
  Bstr Ctrl;
  Bstr RibbonKey;
};
using CVePrsAccel = Component<coclass::VePrsAccel, PrsAccelFields>;
using CVePrsAccelColl = Collection<coclass::VePrsAccelColl, IVePrsAccel>;

}  // namespace sab
