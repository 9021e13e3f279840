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

/// A type of file that a template can open.
struct PrsOpenFileTypeFields {
  Bstr FilterName;
  Bstr FilterExt;
};
using CVePrsOpenFileType = Component<coclass::VePrsOpenFileType, PrsOpenFileTypeFields>;
using CVePrsOpenFileTypeColl = Collection<coclass::VePrsOpenFileTypeColl, IVePrsOpenFileType>;

/// Which class edits the database objects of an interface.
struct PrsEditObjFields {
  Bstr DbObjIID;
  Bstr EditObjCLSID;
};
using CVePrsEditObj = Component<coclass::VePrsEditObj, PrsEditObjFields>;
using CVePrsEditObjColl = Collection<coclass::VePrsEditObjColl, IVePrsEditObj>;

/// A command of an environment, or the mark where a group of commands begins.
struct PrsCommandFields {
  Bstr Identify;
  Bstr CLSID;
  Bstr Priority;
  Bstr LocalName;
  VARIANT_BOOL IsGroup = VARIANT_FALSE;
  Bstr GroupName;
  VARIANT_BOOL SystemCommand = VARIANT_FALSE;
  Bstr CommandProperty;
  int AppMode = 0;
};
using CVePrsCommand = Component<coclass::VePrsCommand, PrsCommandFields>;
using CVePrsCommandColl = Collection<coclass::VePrsCommandColl, IVePrsCommand>;

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
