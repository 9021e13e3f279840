#pragma once

#include "common/collection.h"
#include "server/owned_object.h"
#include "settings/named_values_parser.h"

namespace sab {

/// One set of a packing of files: the name of its element, and the values in it.
class CVePrsFileBaleSet : public NamedValuesObject<coclass::VePrsFileBaleSet> {
 public:
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* pVal) override {
    return Reported(GetField(name_, pVal));
  }
  /// @return E_INVALIDARG for what cannot name an element
  HRESULT STDMETHODCALLTYPE put_Name(BSTR newVal) override;

 private:
  Bstr name_;
};

using CVePrsFileBaleColl = Collection<coclass::VePrsFileBaleColl, IVePrsFileBaleSet>;

/// Packing of files: values, and sets of values. A child element with elements of its own is a set,
/// every other one a value; so a set without values does not come back.
class CVeFileBaleCfgParser : public NamedValuesParser<coclass::VeFileBaleCfgParser> {
 public:
  HRESULT STDMETHODCALLTYPE GetFileBales(IVePrsFileBaleColl** o_ppFileBales) override;

 private:
  void WriteMore(ConfigElement& node) override;
  /// Sets in the file replace all that there were.
  void ReadMore(const std::vector<ConfigElement>& elements) override;

  OwnedObject<coclass::VePrsFileBaleColl> bales_;
};

}  // namespace sab
