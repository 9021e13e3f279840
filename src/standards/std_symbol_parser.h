#pragma once

#include "common/collection.h"
#include "common/config_document.h"
#include "server/owned_object.h"
#include "standards/attachment.h"

namespace sab {

/// The identifier of a symbol, which its revisions know as well.
struct SymbolIdentifier {
  ComPtr<Shared<SymbolState>> state = Shared<SymbolState>::Create();

  void Assign(TextView text) { state->identify.Assign(text); }
};
inline HRESULT GetField(const SymbolIdentifier& field, BSTR* out) noexcept {
  return GetField(field.state->identify, out);
}

/// A symbol of a drafting standard: its identifier, the class of the host's object, and its
/// revisions, each read by an object of the class that the file names.
struct StdSymbolParserFields {
  SymbolIdentifier ID;
  Bstr CLSID;
  Bstr RevParserCLSID;
  OwnedObject<coclass::VeStdSymRevParserColl> RevParserColl;
  IVeStdSymbolParser* self = nullptr;  ///< while it loads

  /// Revisions that precede RevParserCLSID, or whose class cannot be created, are passed over.
  /// Raises ComError: kInvalidCatalogue without a node; E_INVALIDARG for a number that is no handle
  /// of one.
  void Load(IVeStdSymbolParser& object, const Address& node);
  void ReadRevision(const ConfigElement& element);
  /// Null detaches.
  void AttachStdInfo(IVeStandardParser* standard) { ID.state->standard = StateOf(standard); }
  /// Null where the symbol is attached to no standard.
  Bstr AttachStdName() const { return NameOf(ID.state->standard); }
};

class CVeStdSymbolParser : public Component<coclass::VeStdSymbolParser, StdSymbolParserFields> {
  HRESULT QueryInnerInterface(REFIID riid, void** object) override {
    return fields.ID.state->QueryInterface(riid, object);
  }
};

using CVeStdSymbolParserColl = Collection<coclass::VeStdSymbolParserColl, IVeStdSymbolParser>;

}  // namespace sab
