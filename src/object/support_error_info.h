#pragma once

#include "automation/dispatch.h"
#include "object/tear_off.h"

namespace sab {

/// Says which interfaces of an object report rich error info.
class SupportErrorInfo final : public TearOff<ISupportErrorInfo> {
 public:
  /// @param info the object's interface and, through it, the interfaces that one derives from
  static HRESULT Create(IUnknown* object, const InterfaceInfo& info, void** out) noexcept {
    return CreateAs<SupportErrorInfo>(out, object, info);
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override {
    for (const InterfaceInfo* info = &info_; info; info = info->base) {
      if (riid == *info->iid) return S_OK;
    }
    return S_FALSE;
  }

 private:
  friend TearOff;
  SupportErrorInfo(IUnknown* object, const InterfaceInfo& info)
      : TearOff(object, IID_ISupportErrorInfo), info_(info) {}

  const InterfaceInfo& info_;
};

}  // namespace sab
