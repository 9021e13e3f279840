#include "platform/registry_change.h"

namespace sab {

RegistryChange::RegistryChange() = default;

RegistryChange::~RegistryChange() = default;

void RegistryChange::Keep() { is_open_ = false; }

}  // namespace sab
