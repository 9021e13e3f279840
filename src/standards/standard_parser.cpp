#include "standards/standard_parser.h"

#include "binding/bind.h"
#include "formats/catalogue.h"
#include "standards/catalogue_loading.h"

namespace sab {
namespace {

using F = StandardParserFields;

using Attributes =
    Bound<formats::kStandardAttributes, Bind<"Name", &F::Name>, Bind<"DimLink", &F::DimLink>,
          Bind<"LeaderLink", &F::LeaderLink>, Bind<"DimStyleName", &F::DimStyleName>,
          Bind<"Perspective", &F::Perspective>, Bind<"TextStyleName", &F::TextStyleName>,
          Bind<"TextHeight", &F::TextHeight>, Bind<"TextColor", &F::TextColor>,
          Bind<"ArrowStyle", &F::ArrowStyle>, Bind<"ArrowSize", &F::ArrowSize>,
          Bind<"LeaderColor", &F::LeaderColor>, Bind<"ListPoint", &F::SymLoadPos>,
          Bind<"SymbolColor", &F::SymbolColor>, Bind<"ManageObjAttribute", &F::ManageObjAttribute>>;

void ReadSymbols(IVeStandardParser& self, F& standard, const ConfigElement& symbols) {
  CatalogueLoading loading;
  unsigned place = 0;
  for (const ConfigElement child : symbols.Children()) {
    ++place;
    const auto symbol = loading.Creator().Create<coclass::VeStdSymbolParser>();
    // Before it loads, so that its revisions may ask; a class that does not care need not know.
    symbol->SetAttachStdInfo(&self);
    const ConfigNodeHandle handle(child);
    CheckLoaded(symbol->Load(handle.Get()), "symbol " + std::to_string(place));
    Check(standard.SymbolParserColl->AddTail(symbol.Get(), nullptr),
          "The list of symbols could not be filled.");
  }
}

}  // namespace

void F::Load(IVeStandardParser& self, const Address& node) {
  const ConfigElement standard = ElementToLoad(node);
  if (const auto attributes = standard.Child(kElement<formats::kStandard, "Attributes">)) {
    Reading reading;
    ReadElements(reading, attributes, Attributes::kContent, this);
  }
  if (const auto symbols = standard.Child(kElement<formats::kStandard, "StandardSymbols">)) {
    ReadSymbols(self, *this, symbols);
  }
}

}  // namespace sab
