#include "platform/registry_change.h"

#include <sabxml/com.h>
#include <sabxml/com/registry_change.h>

#include <utility>

#include "base/com_error.h"
#include "base/error_info.h"

namespace sab {
namespace {

void CheckStatus(LSTATUS status) {
  if (status == ERROR_SUCCESS) return;
  throw ComError(HRESULT_FROM_WIN32(static_cast<DWORD>(status)),
                 "The registry could not be changed: " + TakeErrorInfo());
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

std::uint64_t RegistryGeneration() noexcept { return SabComRegistryGeneration(); }

}  // namespace sab
