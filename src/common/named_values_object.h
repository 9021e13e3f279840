#pragma once

#include <string>

#include "base/com_error.h"
#include "common/named_values.h"
#include "object/component.h"

namespace sab {

/// An object that keeps named values, whatever they are about. Asking for an unknown name or index
/// gives E_INVALIDARG and null.
template <class Coclass, class Fields = NoFields>
class NamedValuesObject : public ComponentBase<Coclass, Fields> {
 public:
  HRESULT STDMETHODCALLTYPE get_ValueCount(INT* pVal) override {
    return Base::Reported(GetField(static_cast<INT>(values_.Count()), pVal));
  }
  HRESULT STDMETHODCALLTYPE get_ValueName(INT i_iIndex, BSTR* pVal) override {
    if (!pVal) return Base::Reported(E_POINTER);
    *pVal = nullptr;
    return Base::Guarded([&] {
      if (i_iIndex < 0 || static_cast<std::size_t>(i_iIndex) >= values_.Count()) {
        throw ComError(E_INVALIDARG, "There is no value " + std::to_string(i_iIndex) +
                                         ": there are " + std::to_string(values_.Count()) +
                                         ", counted from 0.");
      }
      *pVal = Bstr(values_.NameAt(static_cast<std::size_t>(i_iIndex))).Detach();
    });
  }
  HRESULT STDMETHODCALLTYPE get_Value(BSTR i_bsName, BSTR* pVal) override {
    if (!pVal) return Base::Reported(E_POINTER);
    *pVal = nullptr;
    return Base::Guarded([&] { *pVal = Bstr(ValueNamed(Bstr::ViewOf(i_bsName))).Detach(); });
  }
  /// A new name adds a value at the end. @return E_INVALIDARG for what cannot name a value
  HRESULT STDMETHODCALLTYPE put_Value(BSTR i_bsName, BSTR newVal) override {
    return Base::Guarded([&] {
      CheckName(Bstr::ViewOf(i_bsName));
      values_.Set(Bstr::ViewOf(i_bsName), Bstr::ViewOf(newVal));
    });
  }
  HRESULT STDMETHODCALLTYPE RemoveValue(BSTR i_bsName) override {
    return Base::Guarded([&] {
      if (!values_.Remove(Bstr::ViewOf(i_bsName))) RaiseUnknown(Bstr::ViewOf(i_bsName));
    });
  }
  HRESULT STDMETHODCALLTYPE RemoveAllValues() override {
    values_.Clear();
    return S_OK;
  }

 protected:
  // Raises ComError(E_INVALIDARG) for what cannot name a value: normally an element.
  virtual void CheckName(TextView name) const { CheckElementName(ToUtf8(name)); }

  TextView ValueNamed(TextView name) const {
    const std::optional<TextView> value = values_.Find(name);
    if (!value) RaiseUnknown(name);
    return *value;
  }

  NamedValues values_;

 private:
  using Base = ComponentBase<Coclass, Fields>;

  [[noreturn]] static void RaiseUnknown(TextView name) {
    throw ComError(E_INVALIDARG, "There is no value named \"" + ToUtf8(name) + "\".");
  }
};

}  // namespace sab
