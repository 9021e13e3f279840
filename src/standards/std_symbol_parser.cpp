#include "standards/std_symbol_parser.h"

#include "binding/bind.h"
#include "formats/catalogue.h"
#include "standards/catalogue_loading.h"

namespace sab {

struct CVeStdSymbolParser::Elements
    : Bound<formats::kSymbol, Bind<"Identify", &CVeStdSymbolParser::SetIdentify>,
            Bind<"CLSID", &CVeStdSymbolParser::clsid_>,
            Bind<"RevParserCLSID", &CVeStdSymbolParser::rev_parser_clsid_>,
            Call<"Revision", &CVeStdSymbolParser::ReadRevision>> {};

HRESULT CVeStdSymbolParser::Load(ULONG_PTR i_ulPrsNode) {
  return Guarded([&] {
    const ConfigElement symbol = ElementToLoad(i_ulPrsNode, IsLateBound(), Coclass::kName);
    const CatalogueLoading loading;
    Reading reading;
    ReadElements(reading, symbol, Elements::kContent, OwnerPointer(*this));
  });
}

void CVeStdSymbolParser::ReadRevision(const ConfigElement& element) {
  CLSID clsid;
  if (rev_parser_clsid_.IsEmpty() || FAILED(CLSIDFromString(rev_parser_clsid_.Get(), &clsid))) {
    return;
  }
  ComPtr<IVeStdSymRevParser> revision;
  const HRESULT created = ComponentCreator::Current()->CreateInstance(
      clsid, nullptr, IdOf<IVeStdSymRevParser>(), revision.PutVoid());
  if (created == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(created)) return;
  // Before it loads, so that it may ask; a class that does not care need not know.
  revision->SetAttachSymStdInfo(this);
  const ConfigNodeHandle handle(element);
  CheckLoaded(revision->Load(handle.Get()), "revision of " + ToUtf8(state_->identify.View()));
  Check(revisions_->AddTail(revision.Get(), nullptr), "The list of revisions could not be filled.");
}

HRESULT CVeStdSymbolParser::SetAttachStdInfo(IVeStandardParser* i_pStdParser) {
  return Guarded([&] { state_->standard = StateOf(i_pStdParser); });
}

}  // namespace sab
