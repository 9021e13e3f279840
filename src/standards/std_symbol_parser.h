#pragma once

#include "automation/takes_addresses.h"
#include "common/collection.h"
#include "common/config_document.h"
#include "server/owned_object.h"
#include "standards/attachment.h"

namespace sab {

/// A symbol of a drafting standard: its identifier, the class of the host's object, and its
/// revisions, each read by an object of the class that the file names.
class CVeStdSymbolParser : public TakesAddresses<ComponentBase<coclass::VeStdSymbolParser>> {
 public:
  /// Revisions that stand before RevParserCLSID, or whose class cannot be created, are passed over.
  /// @return kInvalidCatalogue without a node; E_INVALIDARG for a number that is no handle of one
  HRESULT STDMETHODCALLTYPE Load(ULONG_PTR i_ulPrsNode) override;
  HRESULT STDMETHODCALLTYPE GetRevParserColl(IVeStdSymRevParserColl** o_ppColl) override {
    return Reported(GetField(revisions_, o_ppColl));
  }
  HRESULT STDMETHODCALLTYPE GetID(BSTR* o_pbsID) override {
    return Reported(GetField(state_->identify, o_pbsID));
  }
  HRESULT STDMETHODCALLTYPE GetCLSID(BSTR* o_pbsCLSID) override {
    return Reported(GetField(clsid_, o_pbsCLSID));
  }
  HRESULT STDMETHODCALLTYPE GetRevParserCLSID(BSTR* o_pbsRevParserCLSID) override {
    return Reported(GetField(rev_parser_clsid_, o_pbsRevParserCLSID));
  }
  /// Null where the symbol is attached to no standard.
  HRESULT STDMETHODCALLTYPE GetAttachStdName(BSTR* o_pName) override {
    return Reported(CopyName(state_->standard, o_pName));
  }
  /// Null detaches.
  HRESULT STDMETHODCALLTYPE SetAttachStdInfo(IVeStandardParser* i_pStdParser) override;

 protected:
  HRESULT QueryInnerInterface(REFIID riid, void** object) override {
    return state_->QueryInterface(riid, object);
  }

 private:
  struct Elements;

  void SetIdentify(TextView text) { state_->identify.Assign(text); }
  void ReadRevision(const ConfigElement& element);

  ComPtr<Shared<SymbolState>> state_ = Shared<SymbolState>::Create();
  Bstr clsid_;
  Bstr rev_parser_clsid_;
  OwnedObject<coclass::VeStdSymRevParserColl> revisions_;
};

using CVeStdSymbolParserColl = Collection<coclass::VeStdSymbolParserColl, IVeStdSymbolParser>;

}  // namespace sab
