#include "common/support_error_info.h"

#include <new>

namespace sab {

HRESULT SupportErrorInfo::Create(IUnknown* object, const InterfaceInfo& info, void** out) noexcept {
  auto* const created = new (std::nothrow) SupportErrorInfo(object, info);
  if (!created) return E_OUTOFMEMORY;
  *out = static_cast<ISupportErrorInfo*>(created);
  return S_OK;
}

HRESULT SupportErrorInfo::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  if (riid == IID_ISupportErrorInfo) {
    *object = static_cast<ISupportErrorInfo*>(this);
    AddRef();
    return S_OK;
  }
  return object_->QueryInterface(riid, object);
}

ULONG SupportErrorInfo::AddRef() { return ++references_; }

ULONG SupportErrorInfo::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT SupportErrorInfo::InterfaceSupportsErrorInfo(REFIID riid) {
  for (const InterfaceInfo* info = &info_; info; info = info->base) {
    if (riid == *info->iid) return S_OK;
  }
  return S_FALSE;
}

}  // namespace sab
