#pragma once

#include "object/component.h"
#include "settings/settings_table.h"

namespace sab {

/// A settings group: loads its values from the elements under a node path of a file, and saves them
/// there as new elements.
///
/// @tparam Fields plain struct of the values with
///           static std::span<const SettingsRow> Rows();
template <class Coclass, class Fields>
class SettingsParser : public Component<Coclass, Fields> {
 public:
  HRESULT STDMETHODCALLTYPE Save(BSTR i_bsCfgPath, BSTR i_bsNodePath) override {
    return this->Guarded([&] { SaveTo(Bstr::ViewOf(i_bsCfgPath), Bstr::ViewOf(i_bsNodePath)); });
  }
  HRESULT STDMETHODCALLTYPE Load(BSTR i_bsCfgPath, BSTR i_bsNodePath) override {
    return this->Guarded([&] { LoadFrom(Bstr::ViewOf(i_bsCfgPath), Bstr::ViewOf(i_bsNodePath)); });
  }

 protected:
  void SaveTo(TextView file, TextView node_path) const {
    ConfigDocument document;
    document.LoadToChange(file);
    if (const ConfigElement node = document.SelectToChange(node_path))
      AppendSettings(Fields::Rows(), &this->fields, node);
    document.Save(file);
  }
  void LoadFrom(TextView file, TextView node_path) {
    ConfigDocument document;
    document.Load(file);  // without a file every value stays
    LoadSettings(Fields::Rows(), &this->fields, document, node_path);
  }
};

}  // namespace sab
