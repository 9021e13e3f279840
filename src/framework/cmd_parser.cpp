#include "framework/cmd_parser.h"

#include "formats/commands.h"
#include "framework/element_objects.h"
#include "framework/make.h"

namespace sab {

void CmdParserFields::GenerateCmd() {
  using F = CmdParserFields;
  /// The mark where a group of commands begins.
  using Group = New<coclass::VePrsCommand, Raised<&IVePrsCommand::put_IsGroup>,
                    OwnText<&IVePrsCommand::put_GroupName>>;
  using Elements = BoundPaths<formats::kCommandsDocument, Bind<"Identify", &F::CmdFileID>,
                              Within<"Commands", Each<"Group", Group, &F::Commands>,
                                     Each<"Command", New<coclass::VePrsCommand>, &F::Commands,
                                          Bind<"Identify", &IVePrsCommand::put_Identify>,
                                          Bind<"CLSID", &IVePrsCommand::put_CLSID>,
                                          Bind<"Priority", &IVePrsCommand::put_Priority>,
                                          Bind<"LocalName", &IVePrsCommand::put_LocalName>,
                                          Bind<"SystemCmd", &IVePrsCommand::put_SystemCommand>,
                                          Bind<"Property", &IVePrsCommand::put_CommandProperty>,
                                          Bind<"AppMode", &IVePrsCommand::put_AppMode>>>>;
  ReadDescriptor<Elements>(*this);
}

}  // namespace sab
