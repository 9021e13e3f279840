#pragma once

#include "framework/descriptor_text.h"
#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

/// Reads a command descriptor: the commands that an environment offers, in groups, as one flat
/// list.
struct CmdParserFields {
  Bstr ConfigurationPath;
  DescriptorText CmdFileID;
  OwnedObject<coclass::VePrsCommandColl> Commands;

  void GenerateCmd();
};
using CVeCmdParser = Component<coclass::VeCmdParser, CmdParserFields>;

}  // namespace sab
