// Small blocks where a tool watches every allocation: each is one of the system's.

#include <cstdlib>

#include "sabcom/small_blocks.h"

namespace sabcom {

void* AllocateBlock(std::size_t size) noexcept { return std::malloc(size ? size : 1); }

void FreeBlock(void* block, std::size_t) noexcept { std::free(block); }

}  // namespace sabcom
