#pragma once

#include "common/collection.h"
#include "common/config_document.h"
#include "server/owned_object.h"
#include "standards/attachment.h"

namespace sab {

/// The name of a standard, which its symbols know as well.
struct StandardName {
  ComPtr<Shared<StandardState>> state = Shared<StandardState>::Create();

  void Assign(TextView text) { state->name.Assign(text); }
};
inline HRESULT GetField(const StandardName& field, BSTR* out) noexcept {
  return GetField(field.state->name, out);
}
inline HRESULT PutField(StandardName& field, BSTR value) noexcept {
  return PutField(field.state->name, value);
}

/// A drafting standard: how its annotations look, and its symbols. Truth values are kept as the
/// numbers that files have.
struct StandardParserFields {
  StandardName Name;
  VARIANT_BOOL DimLink = 0;
  VARIANT_BOOL LeaderLink = 0;
  Bstr DimStyleName;
  Bstr TextStyleName;
  double TextHeight = 0;
  LONG TextColor = 0;
  SHORT ArrowStyle = 0;
  double ArrowSize = 0;
  LONG LeaderColor = 0;
  SHORT SymLoadPos = 0;
  LONG SymbolColor = 0;
  VARIANT_BOOL ManageObjAttribute = 0;
  LONG Perspective = 0;
  OwnedObject<coclass::VeStdSymbolParserColl> SymbolParserColl;

  /// Appends to the symbols; each is attached to this standard. Raises ComError: kInvalidCatalogue
  /// without a node; E_INVALIDARG for a number that is no handle of one.
  void Load(IVeStandardParser& self, const Address& node);
};

class CVeStandardParser : public Component<coclass::VeStandardParser, StandardParserFields> {
  HRESULT QueryInnerInterface(REFIID riid, void** object) override {
    return fields.Name.state->QueryInterface(riid, object);
  }
};

using CVeStandardParserColl = Collection<coclass::VeStandardParserColl, IVeStandardParser>;

}  // namespace sab
