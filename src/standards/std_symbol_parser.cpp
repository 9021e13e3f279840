#include "standards/std_symbol_parser.h"

#include "base/com_error.h"
#include "standards/catalogue_loading.h"

namespace sab {

HRESULT CVeStdSymbolParser::Load(ULONG_PTR i_ulPrsNode) {
  return Guarded([&] {
    const ConfigElement symbol = ElementToLoad(i_ulPrsNode, IsLateBound(), Coclass::kName);
    CatalogueLoading loading;
    Text text;
    for (const ConfigElement child : symbol.Children()) {
      if (child.Is("Identify")) {
        state_->identify.Assign(child.ReadText(text));
      } else if (child.Is("CLSID")) {
        clsid_.Assign(child.ReadText(text));
      } else if (child.Is("RevParserCLSID")) {
        rev_parser_clsid_.Assign(child.ReadText(text));
      } else if (child.Is("Revision")) {
        ReadRevision(child, loading.Creator());
      }
    }
  });
}

void CVeStdSymbolParser::ReadRevision(const ConfigElement& element, ComponentCreator& creator) {
  CLSID clsid;
  if (rev_parser_clsid_.IsEmpty() || FAILED(CLSIDFromString(rev_parser_clsid_.Get(), &clsid))) {
    return;
  }
  ComPtr<IVeStdSymRevParser> revision;
  const HRESULT created =
      creator.CreateInstance(clsid, nullptr, IdOf<IVeStdSymRevParser>(), revision.PutVoid());
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
