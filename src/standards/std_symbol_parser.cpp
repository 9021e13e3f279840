#include "standards/std_symbol_parser.h"

#include "binding/bind.h"
#include "formats/catalogue.h"
#include "standards/catalogue_loading.h"

namespace sab {

void StdSymbolParserFields::Load(IVeStdSymbolParser& object, const Address& node) {
  using F = StdSymbolParserFields;
  using Elements =
      Bound<formats::kSymbol, Bind<"Identify", &F::ID>, Bind<"CLSID", &F::CLSID>,
            Bind<"RevParserCLSID", &F::RevParserCLSID>, Call<"Revision", &F::ReadRevision>>;
  const HandedElement handed = ElementToLoad(node);
  const ConfigElement symbol(handed.Place());
  const CatalogueLoading loading;
  self = &object;
  Reading reading;
  ReadElements(reading, symbol, Elements::kContent, this);
}

void StdSymbolParserFields::ReadRevision(const ConfigElement& element) {
  GUID clsid;
  if (RevParserCLSID.IsEmpty() || FAILED(CLSIDFromString(RevParserCLSID.Get(), &clsid))) return;
  ComPtr<IVeStdSymRevParser> revision;
  const HRESULT created = ComponentCreator::Current()->CreateInstance(
      clsid, nullptr, IdOf<IVeStdSymRevParser>(), revision.PutVoid());
  if (created == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(created)) return;
  // Before it loads, so that it may ask; a class that does not care need not know.
  revision->SetAttachSymStdInfo(self);
  NodeHandle handle(element.Place());
  CheckLoaded(revision->Load(handle.For(*revision)),
              "revision of " + ToUtf8(ID.state->identify.View()));
  Check(RevParserColl->AddTail(revision.Get(), nullptr),
        "The list of revisions could not be filled.");
}

}  // namespace sab
