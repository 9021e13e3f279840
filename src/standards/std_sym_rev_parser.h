#pragma once

#include "automation/takes_addresses.h"
#include "binding/bind.h"
#include "common/collection.h"
#include "common/conversions.h"
#include "common/named_values_object.h"
#include "formats/catalogue.h"
#include "standards/attachment.h"
#include "standards/catalogue_loading.h"
#include "standards/revision_values.h"

namespace sab {

struct StdSymRevParserFields {
  Bstr Revision;
  LONG RevID = 0;
};

template <class Coclass>
using StdSymRevParserBase = TakesAddresses<
    Properties<IVeStdSymRevParser, NamedValuesObject<Coclass, StdSymRevParserFields>>>;

/// The parser of a revision of a symbol, whatever the symbol is: it keeps the values that the file
/// has, by their names.
template <class Coclass>
class IVeStdSymRevParserImpl : public StdSymRevParserBase<Coclass> {
 public:
  /// Revision becomes the text of the child RevName where there is one.
  /// @return kInvalidCatalogue without a node; E_INVALIDARG for a number that is no handle of one
  HRESULT STDMETHODCALLTYPE Load(ULONG_PTR i_ulPrsNode) override {
    return this->Guarded([&] {
      const ConfigElement revision =
          ElementToLoad(i_ulPrsNode, this->IsLateBound(), Coclass::kName);
      ReadRevisionValues(revision, this->values_);
      Text text;
      for (const ConfigElement child : revision.Children()) {
        if (!child.Is(kElement<formats::kRevision, "RevName">)) continue;
        this->fields.Revision.Assign(child.ReadText(text));
        break;
      }
    });
  }
  /// Null detaches.
  HRESULT STDMETHODCALLTYPE SetAttachSymStdInfo(IVeStdSymbolParser* i_pStdSymParser) override {
    return this->Guarded([&] { symbol_ = StateOf(i_pStdSymParser); });
  }
  /// Null where there is none, as with the other.
  HRESULT STDMETHODCALLTYPE GetAttachStdName(BSTR* o_pName) override {
    return this->Reported(
        CopyName(symbol_ ? symbol_->standard : ComPtr<Shared<StandardState>>(), o_pName));
  }
  /// The number that the symbol's identifier begins with.
  HRESULT STDMETHODCALLTYPE GetAttachSymStdID(LONG* o_plSymInfoID) override {
    return this->Reported(GetField(
        static_cast<LONG>(symbol_ ? ParseInt(symbol_->identify.View()) : 0), o_plSymInfoID));
  }

 protected:
  // Values are named by paths, and are not written back.
  void CheckName(TextView name) const override {
    if (name.empty()) throw ComError(E_INVALIDARG, "A value needs a name.");
  }

 private:
  ComPtr<Shared<SymbolState>> symbol_;
};

using CVeStdRoughRevParser = IVeStdSymRevParserImpl<coclass::VeStdRoughRevParser>;
using CVeStdGeoTolRevParser = IVeStdSymRevParserImpl<coclass::VeStdGeoTolRevParser>;
using CVeStdWeldRevParser = IVeStdSymRevParserImpl<coclass::VeStdWeldRevParser>;
using CVeStdDatumRevParser = IVeStdSymRevParserImpl<coclass::VeStdDatumRevParser>;
using CVeStdCutsRevParser = IVeStdSymRevParserImpl<coclass::VeStdCutsRevParser>;
using CVeStdPartnoRevParser = IVeStdSymRevParserImpl<coclass::VeStdPartnoRevParser>;
using CVeStdBomRevParser = IVeStdSymRevParserImpl<coclass::VeStdBomRevParser>;
using CVeStdDetailViewRevParser = IVeStdSymRevParserImpl<coclass::VeStdDetailViewRevParser>;
using CVeStdDimLeaderRevParser = IVeStdSymRevParserImpl<coclass::VeStdDimLeaderRevParser>;
using CVeStdTaperRevParser = IVeStdSymRevParserImpl<coclass::VeStdTaperRevParser>;
using CVeStdHoleListRevParser = IVeStdSymRevParserImpl<coclass::VeStdHoleListRevParser>;
using CVeStdDimRevParser = IVeStdSymRevParserImpl<coclass::VeStdDimRevParser>;
using CVeStdCenterLnRevParser = IVeStdSymRevParserImpl<coclass::VeStdCenterLnRevParser>;

using CVeStdSymRevParserColl = Collection<coclass::VeStdSymRevParserColl, IVeStdSymRevParser>;

}  // namespace sab
