#include "platform/registry_change.h"

#include <sabxml/com.h>
#include <sabxml/com/registry_change.h>

#include <utility>

#include "base/bstr.h"
#include "base/com_error.h"
#include "base/com_ptr.h"

namespace sab {
namespace {

void CheckStatus(LSTATUS status) {
  if (status == ERROR_SUCCESS) return;
  ComPtr<IErrorInfo> info;
  Bstr description;
  if (GetErrorInfo(0, info.Put()) == S_OK) info->GetDescription(description.Put());
  throw ComError(HRESULT_FROM_WIN32(static_cast<DWORD>(status)),
                 "The registry could not be changed: " + ToUtf8(description.View()));
}

}  // namespace

RegistryChange::RegistryChange() { CheckStatus(SabComBeginRegistryChange()); }

RegistryChange::~RegistryChange() {
  if (is_open_) SabComEndRegistryChange(FALSE);
}

void RegistryChange::Keep() {
  is_open_ = false;
  CheckStatus(SabComEndRegistryChange(TRUE));
}

}  // namespace sab
