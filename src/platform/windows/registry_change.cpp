#include "platform/registry_change.h"

namespace sab {

RegistryChange::RegistryChange() = default;

RegistryChange::~RegistryChange() = default;

void RegistryChange::Keep() { is_open_ = false; }

std::uint64_t RegistryGeneration() noexcept { return 0; }

}  // namespace sab
