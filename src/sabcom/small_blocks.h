#pragma once

#include <cstddef>

namespace sabcom {

/// Memory for small things that come and go in great numbers, strings and objects: without a lock
/// where a thread frees what it allocated itself, and right where it does not.
///
/// @return memory aligned for 16 bytes; null when there is none
void* AllocateBlock(std::size_t size) noexcept;
/// @param size that with which it was allocated
void FreeBlock(void* block, std::size_t size) noexcept;

/// What a block of this size really has.
constexpr std::size_t RoundedBlockSize(std::size_t size) { return (size + 15) & ~std::size_t{15}; }

}  // namespace sabcom
