#pragma once

#include "common/collection.h"
#include "server/owned_object.h"
#include "settings/named_value_groups.h"

namespace sab {

/// A text that can name an element; putting another one is E_INVALIDARG.
struct ElementName : Bstr {};

inline HRESULT PutField(ElementName& field, BSTR value) {
  CheckElementName(ToUtf8(Bstr::ViewOf(value)));
  return PutField(static_cast<Bstr&>(field), value);
}

/// One set of a packing of files: the name of its element, and the values in it.
struct FileBaleSetFields : NamedValueFields {
  ElementName Name;
};
using CVePrsFileBaleSet = Component<coclass::VePrsFileBaleSet, FileBaleSetFields>;
using CVePrsFileBaleColl = Collection<coclass::VePrsFileBaleColl, IVePrsFileBaleSet>;

/// Packing of files: values, and sets of values. A child element with elements of its own is a set,
/// every other one a value; so a set without values does not come back.
struct FileBaleCfgFields : NamedValueSettings {
  OwnedObject<coclass::VePrsFileBaleColl> FileBales;

 private:
  void WriteMore(ConfigElement& node) override;
  /// Sets in the file replace all existing ones.
  void ReadMore(const std::vector<ConfigElement>& elements) override;
};
using CVeFileBaleCfgParser = Component<coclass::VeFileBaleCfgParser, FileBaleCfgFields>;

}  // namespace sab
