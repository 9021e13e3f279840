#pragma once

#include "common/collection.h"
#include "common/named_value_fields.h"
#include "standards/attachment.h"

namespace sab {

/// A revision of a symbol, whatever the symbol is: the values that the file has, by their names.
struct StdSymRevParserFields : NamedValueFields {
  Bstr Revision;
  LONG RevID = 0;
  ComPtr<Shared<SymbolState>> symbol;  ///< null where it is attached to none

  /// Revision becomes the text of the child RevName where there is one. Raises ComError:
  /// kInvalidCatalogue without a node; E_INVALIDARG for a number that is no handle of one.
  void Load(const Address& node);
  /// Null detaches.
  void AttachSymStdInfo(IVeStdSymbolParser* object) { symbol = StateOf(object); }
  /// Null where there is none, as with the symbol.
  Bstr AttachStdName() const;
  /// The number that the symbol's identifier begins with.
  LONG AttachSymStdID() const;
  /// Values are named by paths, and are not written back.
  void SetValue(TextView name, TextView text);
};

template <class Coclass>
using StdSymRevParser = Component<Coclass, StdSymRevParserFields>;

using CVeStdRoughRevParser = StdSymRevParser<coclass::VeStdRoughRevParser>;
using CVeStdGeoTolRevParser = StdSymRevParser<coclass::VeStdGeoTolRevParser>;
using CVeStdWeldRevParser = StdSymRevParser<coclass::VeStdWeldRevParser>;
using CVeStdDatumRevParser = StdSymRevParser<coclass::VeStdDatumRevParser>;
using CVeStdCutsRevParser = StdSymRevParser<coclass::VeStdCutsRevParser>;
using CVeStdPartnoRevParser = StdSymRevParser<coclass::VeStdPartnoRevParser>;
using CVeStdBomRevParser = StdSymRevParser<coclass::VeStdBomRevParser>;
using CVeStdDetailViewRevParser = StdSymRevParser<coclass::VeStdDetailViewRevParser>;
using CVeStdDimLeaderRevParser = StdSymRevParser<coclass::VeStdDimLeaderRevParser>;
using CVeStdTaperRevParser = StdSymRevParser<coclass::VeStdTaperRevParser>;
using CVeStdHoleListRevParser = StdSymRevParser<coclass::VeStdHoleListRevParser>;
using CVeStdDimRevParser = StdSymRevParser<coclass::VeStdDimRevParser>;
using CVeStdCenterLnRevParser = StdSymRevParser<coclass::VeStdCenterLnRevParser>;

using CVeStdSymRevParserColl = Collection<coclass::VeStdSymRevParserColl, IVeStdSymRevParser>;

}  // namespace sab
