#pragma once

#include "framework/text_getters.h"
#include "server/owned_object.h"

namespace sab {

struct CmdParserFields {
  Bstr ConfigurationPath;
};

/// Reads a command descriptor: the commands that an environment offers, in groups, as one flat
/// list.
class CVeCmdParser : public TextGetters<coclass::VeCmdParser, CmdParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateCmd() override;

  HRESULT STDMETHODCALLTYPE GetCmdFileID(BSTR* pID) override {
    return CopyText(command_file_id_, pID);
  }
  HRESULT STDMETHODCALLTYPE GetCommands(IVePrsCommandColl** o_ppCommands) override {
    return Reported(GetField(commands_, o_ppCommands));
  }

 private:
  Bstr command_file_id_;
  OwnedObject<coclass::VePrsCommandColl> commands_;
};

}  // namespace sab
