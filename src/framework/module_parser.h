#pragma once

#include "framework/descriptor_text.h"
#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

/// Reads a module descriptor: a functional module of the host with its environment descriptors and
/// configuration pages.
struct ModuleParserFields {
  Bstr ConfigurationPath;
  DescriptorText ModuleID;
  DescriptorText TmplID;
  StringList EnvPaths;
  OwnedObject<coclass::VePrsConfigColl> Configurations;
  DescriptorText ModuleTitle;
  DescriptorText Description;
  DescriptorText UiStateObjCLSID;
  NeverNullText CLSID;

  void GenerateModule();
};
using CVeModuleParser = Component<coclass::VeModuleParser, ModuleParserFields>;

}  // namespace sab
