#include "standards/standard_parser.h"

#include "binding/bind.h"
#include "formats/catalogue.h"
#include "standards/catalogue_loading.h"

namespace sab {
namespace {

using Attributes = Bound<formats::kStandardAttributes, Bind<"Name", &StandardParserFields::Name>,
                         Bind<"DimLink", &StandardParserFields::DimLink>,
                         Bind<"LeaderLink", &StandardParserFields::LeaderLink>,
                         Bind<"DimStyleName", &StandardParserFields::DimStyleName>,
                         Bind<"Perspective", &StandardParserFields::Perspective>,
                         Bind<"TextStyleName", &StandardParserFields::TextStyleName>,
                         Bind<"TextHeight", &StandardParserFields::TextHeight>,
                         Bind<"TextColor", &StandardParserFields::TextColor>,
                         Bind<"ArrowStyle", &StandardParserFields::ArrowStyle>,
                         Bind<"ArrowSize", &StandardParserFields::ArrowSize>,
                         Bind<"LeaderColor", &StandardParserFields::LeaderColor>,
                         Bind<"ListPoint", &StandardParserFields::SymLoadPos>,
                         Bind<"SymbolColor", &StandardParserFields::SymbolColor>,
                         Bind<"ManageObjAttribute", &StandardParserFields::ManageObjAttribute>>;

void ReadSymbols(IVeStandardParser& self, StandardParserFields& standard,
                 const ConfigElement& symbols) {
  CatalogueLoading loading;
  unsigned place = 0;
  for (const ConfigElement child : symbols.Children()) {
    ++place;
    const auto symbol = loading.Creator().Create<coclass::VeStdSymbolParser>();
    // Before it loads, so that its revisions may ask; a class that does not care need not know.
    symbol->SetAttachStdInfo(&self);
    NodeHandle handle(child.Place());
    CheckLoaded(symbol->Load(handle.For(*symbol)), "symbol " + std::to_string(place));
    Check(standard.SymbolParserColl->AddTail(symbol.Get(), nullptr),
          "The list of symbols could not be filled.");
  }
}

}  // namespace

void StandardParserFields::Load(IVeStandardParser& self, const Address& node) {
  const HandedElement handed = ElementToLoad(node);
  const ConfigElement standard(handed.Place());
  if (const auto attributes = standard.Child(kElement<formats::kStandard, "Attributes">)) {
    Reading reading;
    ReadElements(reading, attributes, Attributes::kContent, this);
  }
  if (const auto symbols = standard.Child(kElement<formats::kStandard, "StandardSymbols">)) {
    ReadSymbols(self, *this, symbols);
  }
}

}  // namespace sab
