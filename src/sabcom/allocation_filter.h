#pragma once

#include <cstddef>

namespace sabcom {

/// Whether a test lets this allocation succeed; see SabComFilterAllocations.
bool MayAllocate(std::size_t size) noexcept;

}  // namespace sabcom
