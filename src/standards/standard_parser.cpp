#include "standards/standard_parser.h"

#include "base/com_error.h"
#include "common/conversions.h"
#include "standards/catalogue_loading.h"

namespace sab {
namespace {

using Fields = StandardParserFields;

void Convert(TextView text, Bstr& value) { value.Assign(text); }
void Convert(TextView text, StandardName& value) { value.state->name.Assign(text); }
void Convert(TextView text, double& value) { value = ParseDouble(text); }
void Convert(TextView text, LONG& value) { value = ParseInt(text); }
void Convert(TextView text, SHORT& value) { value = ParseShort(text); }

struct Attribute {
  std::string_view element;
  void (*store)(Fields& fields, TextView text);
};

template <auto member>
constexpr Attribute Row(std::string_view element) {
  return {element, [](Fields& fields, TextView text) { Convert(text, fields.*member); }};
}

constexpr Attribute kAttributes[] = {
    Row<&Fields::Name>("Name"),
    Row<&Fields::DimLink>("DimLink"),
    Row<&Fields::LeaderLink>("LeaderLink"),
    Row<&Fields::DimStyleName>("DimStyleName"),
    Row<&Fields::Perspective>("Perspective"),
    Row<&Fields::TextStyleName>("TextStyleName"),
    Row<&Fields::TextHeight>("TextHeight"),
    Row<&Fields::TextColor>("TextColor"),
    Row<&Fields::ArrowStyle>("ArrowStyle"),
    Row<&Fields::ArrowSize>("ArrowSize"),
    Row<&Fields::LeaderColor>("LeaderColor"),
    Row<&Fields::SymLoadPos>("ListPoint"),  // the only one that is named otherwise
    Row<&Fields::SymbolColor>("SymbolColor"),
    Row<&Fields::ManageObjAttribute>("ManageObjAttribute"),
};

}  // namespace

HRESULT CVeStandardParser::Load(ULONG_PTR i_bsPrsNode) {
  return Guarded([&] {
    const ConfigElement standard = ElementToLoad(i_bsPrsNode, IsLateBound(), Coclass::kName);
    if (const ConfigElement attributes = standard.Child("Attributes")) ReadAttributes(attributes);
    if (const ConfigElement symbols = standard.Child("StandardSymbols")) ReadSymbols(symbols);
  });
}

void CVeStandardParser::ReadAttributes(const ConfigElement& attributes) {
  Text text;
  for (const ConfigElement child : attributes.Children()) {
    for (const Attribute& attribute : kAttributes) {
      if (!child.Is(attribute.element)) continue;
      attribute.store(fields, child.ReadText(text));
      break;
    }
  }
}

void CVeStandardParser::ReadSymbols(const ConfigElement& symbols) {
  CatalogueLoading loading;
  unsigned place = 0;
  for (const ConfigElement child : symbols.Children()) {
    ++place;
    const auto symbol = loading.Creator().Create<coclass::VeStdSymbolParser>();
    // Before it loads, so that its revisions may ask; a class that does not care need not know.
    symbol->SetAttachStdInfo(this);
    const ConfigNodeHandle handle(child);
    CheckLoaded(symbol->Load(handle.Get()), "symbol " + std::to_string(place));
    Check(symbols_->AddTail(symbol.Get(), nullptr), "The list of symbols could not be filled.");
  }
}

}  // namespace sab
