#pragma once

#include <vector>

#include "common/named_values_object.h"

namespace sab {

/// A settings group whose keys are those of its file: it keeps every element under the node path
/// that has no elements of its own, and saves them there as new elements.
template <class Coclass>
class NamedValuesParser : public NamedValuesObject<Coclass> {
 public:
  HRESULT STDMETHODCALLTYPE Save(BSTR i_bsCfgPath, BSTR i_bsNodePath) override {
    return this->Guarded([&] {
      ConfigDocument document;
      document.LoadToChange(Bstr::ViewOf(i_bsCfgPath));
      if (ConfigElement node = document.SelectToChange(Bstr::ViewOf(i_bsNodePath))) {
        this->values_.Write(node);
        WriteMore(node);
      }
      document.Save(Bstr::ViewOf(i_bsCfgPath));
    });
  }
  HRESULT STDMETHODCALLTYPE Load(BSTR i_bsCfgPath, BSTR i_bsNodePath) override {
    return this->Guarded([&] {
      ConfigDocument document;
      document.Load(Bstr::ViewOf(i_bsCfgPath));  // without a file every value stays
      const std::vector<ConfigElement> elements =
          document.SelectAll(Bstr::ViewOf(i_bsNodePath)).Children();
      this->values_.Read(elements);
      ReadMore(elements);
    });
  }

 protected:
  // What a group keeps beside its values.
  virtual void WriteMore(ConfigElement&) {}
  virtual void ReadMore(const std::vector<ConfigElement>&) {}
};

}  // namespace sab
