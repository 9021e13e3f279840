#pragma once

#include <cstdint>

namespace sab {

/// What this thread writes to the registry, as one step where the registry is a file: it is there
/// once this is kept, or never. On Windows each write is made at once. Raises ComError.
class RegistryChange {
 public:
  RegistryChange();
  RegistryChange(const RegistryChange&) = delete;
  RegistryChange& operator=(const RegistryChange&) = delete;
  ~RegistryChange();

  void Keep();

 private:
  bool is_open_ = true;
};

/// A number that stays the same as long as nobody has changed the registry, and then is new; 0
/// where that cannot be told cheaply.
std::uint64_t RegistryGeneration() noexcept;

}  // namespace sab
