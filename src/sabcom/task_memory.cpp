#include <sabxml/com.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "sabcom/allocation_filter.h"
#include "sabcom/small_blocks.h"

namespace {

// The size is stored before the memory and keeps it aligned.
constexpr SIZE_T kHead = 16;

SIZE_T SizeOf(LPVOID memory) {
  SIZE_T size = 0;
  std::memcpy(&size, static_cast<char*>(memory) - kHead, sizeof size);
  return size;
}

BOOL (*filter)(SIZE_T) = nullptr;

}  // namespace

namespace sabcom {

bool MayAllocate(std::size_t size) noexcept { return !filter || filter(size); }

}  // namespace sabcom

void SabComFilterAllocations(BOOL (*may_allocate)(SIZE_T)) { filter = may_allocate; }

LPVOID CoTaskMemAlloc(SIZE_T size) {
  if (size > std::numeric_limits<SIZE_T>::max() - kHead || !sabcom::MayAllocate(size)) {
    return nullptr;
  }
  auto* const block = static_cast<char*>(sabcom::AllocateBlock(kHead + size));
  if (!block) return nullptr;
  std::memcpy(block, &size, sizeof size);
  return block + kHead;
}

LPVOID CoTaskMemRealloc(LPVOID memory, SIZE_T size) {
  if (!memory) return CoTaskMemAlloc(size);
  if (size == 0) {
    CoTaskMemFree(memory);
    return nullptr;
  }
  const LPVOID moved = CoTaskMemAlloc(size);
  if (!moved) return nullptr;
  std::memcpy(moved, memory, std::min(size, SizeOf(memory)));
  CoTaskMemFree(memory);
  return moved;
}

void CoTaskMemFree(LPVOID memory) {
  if (memory) sabcom::FreeBlock(static_cast<char*>(memory) - kHead, kHead + SizeOf(memory));
}
