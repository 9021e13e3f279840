#pragma once

#include "framework/text_getters.h"
#include "server/owned_object.h"

namespace sab {

struct CmdParserFields {
  Bstr ConfigurationPath;
  Bstr CmdFileID;
  OwnedObject<coclass::VePrsCommandColl> Commands;
};

/// Reads a command descriptor: the commands that an environment offers, in groups, as one flat
/// list.
class CVeCmdParser : public TextGetters<coclass::VeCmdParser, CmdParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateCmd() override;

  HRESULT STDMETHODCALLTYPE GetCmdFileID(BSTR* pID) override {
    return CopyText(fields.CmdFileID, pID);
  }
  HRESULT STDMETHODCALLTYPE GetCommands(IVePrsCommandColl** o_ppCommands) override {
    return Reported(GetField(fields.Commands, o_ppCommands));
  }
};

}  // namespace sab
