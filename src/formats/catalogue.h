#pragma once

#include <sabxml/result_codes.h>

#include "formats/rule.h"

namespace sab::formats {

inline constexpr Rule kStandardAttributes[] = {
    Text("Name", "Name of the standard").Defines(Subject::kStandard).Expected(),
    Flag("DimLink", "Whether dimensions are linked; kept as the number that it is"),
    Flag("LeaderLink", "Whether leaders are linked; kept as the number that it is"),
    Text("DimStyleName", "Style of dimensions"),
    Int32("Perspective", "Kind of projection"),
    Text("TextStyleName", "Style of texts"),
    Double("TextHeight", "Height of texts"),
    Colour("TextColor", "Colour of texts"),
    Int16("ArrowStyle", "Style of arrows"),
    Double("ArrowSize", "Size of arrows"),
    Colour("LeaderColor", "Colour of leaders"),
    Int16("ListPoint", "Where a symbol is attached").Of("SymLoadPos"),
    Colour("SymbolColor", "Colour of symbols"),
    Flag("ManageObjAttribute", "Whether objects' attributes are managed; kept as the number"),
};

/// Of the server's own classes; another class reads what it likes.
inline constexpr auto kRevision = FirstCounts({
    Text("RevName", "Name of the revision").Of("Revision"),
    Text(kAnyName, "Value that is named by the path to its element, at any depth").Each(),
});

inline constexpr Rule kSymbol[] = {
    Text("Identify", "Identifier of the symbol in its standard").Defines(Subject::kSymbol),
    Guid("CLSID", "Class of the object in drawings"),
    Guid("RevParserCLSID", "Class that reads the revisions; it precedes them")
        .HoldsForWhatFollows(),
    Entry("Revision", kRevision, "A revision; skipped where its class does not exist"),
};
inline constexpr Rule kSymbols[] = {
    Entry(kAnyName, kSymbol, "A symbol, whatever the name of its element"),
};

inline constexpr auto kStandard = FirstCounts({
    Group("Attributes", kStandardAttributes, "How annotations look"),
    Group("StandardSymbols", kSymbols, "Symbols of the standard"),
});

inline constexpr Rule kCatalogue[] = {
    Entry(kAnyName, kStandard, "A standard, whatever the name of its element"),
};

// "Configration" is how the files spell it.
inline constexpr Document kCatalogueDocument = {
    .kind = Kind::kCatalogue,
    .root = "NEBStandardConfigration",
    .about = "standards",
    .class_name = "VeStandardCfgParser",
    .method = "Load",
    .result = sabxml::kInvalidCatalogue,
    .content = kCatalogue,
    .help = "The standards that drawings may follow, and the symbols of each",
};

}  // namespace sab::formats
