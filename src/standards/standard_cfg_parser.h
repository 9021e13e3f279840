#pragma once

#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

/// Reads the catalogue of drafting standards. The file is never written.
class CVeStandardCfgParser : public ComponentBase<coclass::VeStandardCfgParser> {
 public:
  /// Standards are added to those that there are; those read before a failure stay.
  /// @return kDocumentNotLoaded for a file that cannot be read; kInvalidCatalogue for one that is
  ///         no catalogue
  HRESULT STDMETHODCALLTYPE Load(BSTR i_bsPath) override;
  HRESULT STDMETHODCALLTYPE GetStandardParserColl(IVeStandardParserColl** o_ppColl) override {
    return Reported(GetField(standards_, o_ppColl));
  }

 private:
  OwnedObject<coclass::VeStandardParserColl> standards_;
};

}  // namespace sab
