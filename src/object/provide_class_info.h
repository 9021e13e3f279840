#pragma once

#include "object/tear_off.h"
#include "platform/type_info.h"

namespace sab {

/// Leads from an object to the description of its class.
class ProvideClassInfo final : public TearOff<IProvideClassInfo> {
 public:
  /// @param clsid the class in the type library
  static HRESULT Create(IUnknown* object, REFCLSID clsid, void** out) noexcept {
    return CreateAs<ProvideClassInfo>(out, object, clsid);
  }

  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    if (!info) return E_POINTER;
    *info = nullptr;
    return GetClassTypeInfo(clsid_, info);
  }

 private:
  friend TearOff;
  ProvideClassInfo(IUnknown* object, REFCLSID clsid)
      : TearOff(object, IID_IProvideClassInfo), clsid_(clsid) {}

  const CLSID& clsid_;
};

}  // namespace sab
