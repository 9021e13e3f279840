#pragma once

#include "automation/takes_addresses.h"
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

/// How the annotations of a standard look. Truth values are kept as the numbers that files have.
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
};

/// A drafting standard: its attributes and its symbols.
class CVeStandardParser
    : public TakesAddresses<Component<coclass::VeStandardParser, StandardParserFields>> {
 public:
  /// Symbols are added to those that there are; each is attached to this standard.
  /// @return kInvalidCatalogue without a node; E_INVALIDARG for a number that is no handle of one
  HRESULT STDMETHODCALLTYPE Load(ULONG_PTR i_bsPrsNode) override;
  HRESULT STDMETHODCALLTYPE GetSymbolParserColl(IVeStdSymbolParserColl** o_ppColl) override {
    return Reported(GetField(symbols_, o_ppColl));
  }

 protected:
  HRESULT QueryInnerInterface(REFIID riid, void** object) override {
    return fields.Name.state->QueryInterface(riid, object);
  }

 private:
  void ReadSymbols(const ConfigElement& symbols);

  OwnedObject<coclass::VeStdSymbolParserColl> symbols_;
};

using CVeStandardParserColl = Collection<coclass::VeStandardParserColl, IVeStandardParser>;

}  // namespace sab
