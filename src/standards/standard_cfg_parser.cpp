#include "standards/standard_cfg_parser.h"

#include "base/com_error.h"
#include "standards/catalogue_loading.h"

namespace sab {
namespace {

// Spelt so in every catalogue.
constexpr std::string_view kDocumentElement = "NEBStandardConfigration";

// "catalogue.xml:12:3: standard 2", without the place where the DOM does not tell it.
std::string Describe(const std::string& file, const ConfigElement& standard, unsigned place) {
  const TextPosition position = standard.Position();
  return LoadFailure{file, position, "standard " + std::to_string(place)}.Describe();
}

}  // namespace

HRESULT CVeStandardCfgParser::Load(BSTR i_bsPath) {
  return Guarded([&] {
    const TextView path = Bstr::ViewOf(i_bsPath);
    if (path.empty()) throw ComError(kDocumentNotLoaded, "No catalogue file is named.");
    const std::string file = ToUtf8(path);
    ConfigDocument document;
    if (!document.Load(path)) throw ComError(kDocumentNotLoaded, document.Failure().Describe());
    const ConfigElement catalogue = document.Select(kDocumentElement);
    if (!catalogue) {
      throw ComError(kInvalidCatalogue, file + ": the document element must be <" +
                                            std::string(kDocumentElement) + ">, spelt so.");
    }
    CatalogueLoading loading;
    unsigned place = 0;
    for (const ConfigElement child : catalogue.Children()) {
      ++place;
      const auto standard = loading.Creator().Create<coclass::VeStandardParser>();
      const ConfigNodeHandle handle(child);
      CheckLoaded(standard->Load(handle.Get()), Describe(file, child, place));
      Check(standards_->AddTail(standard.Get(), nullptr),
            "The list of standards could not be filled.");
    }
  });
}

}  // namespace sab
