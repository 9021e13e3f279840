#pragma once

#include <sabxml/com.h>

#include "base/com_ptr.h"
#include "common/dispatch.h"
#include "common/module_lock.h"

namespace sab {

/// Says which interfaces of an object report rich error info. It is made when somebody asks, so
/// that objects stay small; it keeps its object alive and shares its identity.
class SupportErrorInfo final : public ISupportErrorInfo, private LiveObject {
 public:
  /// @param info the object's interface and, through it, the interfaces that one derives from
  static HRESULT Create(IUnknown* object, const InterfaceInfo& info, void** out) noexcept;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override;

 private:
  SupportErrorInfo(IUnknown* object, const InterfaceInfo& info) : object_(object), info_(info) {}
  virtual ~SupportErrorInfo() = default;

  ComPtr<IUnknown> object_;
  const InterfaceInfo& info_;
  ULONG references_ = 1;
};

}  // namespace sab
