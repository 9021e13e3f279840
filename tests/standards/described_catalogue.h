#pragma once

#include "server/created_object.h"
#include "support/late_object.h"

namespace sab::testing {

/// All that a catalogue parser has: "Name{symbol(revision)(revision) symbol}" for each standard.
inline std::string Described(const LateObject& parser) {
  std::string all;
  for (const LateObject& standard : parser.Follow("GetStandardParserColl").Elements()) {
    std::string symbols;
    for (const LateObject& symbol : standard.Follow("GetSymbolParserColl").Elements()) {
      if (!symbols.empty()) symbols += ' ';
      symbols += symbol.Get("GetID");
      for (const LateObject& revision : symbol.Follow("GetRevParserColl").Elements()) {
        const auto own = revision.As<IVeStdSymRevParser>();  // some cannot be bound late
        symbols += "(" + TextOf(*own, &IVeStdSymRevParser::get_Revision) + ")";
      }
    }
    all += standard.Get("Name") + "{" + symbols + "}";
  }
  return all;
}

}  // namespace sab::testing
