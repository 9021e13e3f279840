#include "standards/standard_cfg_parser.h"

#include "binding/document_reader.h"
#include "formats/catalogue.h"
#include "standards/catalogue_loading.h"

namespace sab {
namespace {

// "catalogue.xml:12:3: standard 2"
std::string Describe(const std::string& file, const ConfigElement& standard, unsigned place) {
  const TextPosition position = standard.Position();
  return LoadFailure{file, position, "standard " + std::to_string(place)}.Describe();
}

}  // namespace

void StandardCfgFields::Load(TextView path) {
  DocumentReader file(formats::kCatalogueDocument, path);
  const ConfigElement catalogue = file.Root();
  CatalogueLoading loading;
  unsigned place = 0;
  for (const ConfigElement child : catalogue.Children()) {
    ++place;
    const auto standard = loading.Creator().Create<coclass::VeStandardParser>();
    NodeHandle handle(child.Place());
    CheckLoaded(standard->Load(handle.For(*standard)), Describe(file.File(), child, place));
    Check(StandardParserColl->AddTail(standard.Get(), nullptr),
          "The list of standards could not be filled.");
  }
}

}  // namespace sab
