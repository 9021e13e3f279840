#include <pthread.h>
#include <sys/mman.h>

#include <mutex>
#include <new>

#include "sabcom/slab.h"

namespace sabcom {
namespace {

// A stretch of address space, aligned for its own size. Its first slab's place holds this head.
struct Region {
  static constexpr std::size_t kSlabs = 64;
  static constexpr std::size_t kBytes = kSlabs * Slab::kBytes;

  std::uint64_t free_slabs;  // a bit each; that of the head is never set
  Region* next;              // of those with a free slab
  Region* previous;

  static Region* Of(void* slab) {
    return reinterpret_cast<Region*>(reinterpret_cast<std::uintptr_t>(slab) & ~(kBytes - 1));
  }
  char* Place(unsigned slab) { return reinterpret_cast<char*>(this) + slab * Slab::kBytes; }
};

constexpr std::uint64_t kAllFree = ~std::uint64_t{1};

Region* first_region = nullptr;  // with a free slab

void Link(Region* region) {
  region->previous = nullptr;
  region->next = first_region;
  if (region->next) region->next->previous = region;
  first_region = region;
}

void Unlink(Region* region) {
  (region->previous ? region->previous->next : first_region) = region->next;
  if (region->next) region->next->previous = region->previous;
}

Region* MapRegion() {
  // The system aligns for a page only: of twice the size, a whole region can be kept.
  void* const mapped = mmap(nullptr, 2 * Region::kBytes, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  char* const begin = static_cast<char*>(mapped);
  const auto address = reinterpret_cast<std::uintptr_t>(begin);
  const std::size_t before = -address & (Region::kBytes - 1);
  if (before > 0) munmap(begin, before);
  munmap(begin + before + Region::kBytes, Region::kBytes - before);
  auto* const region = new (begin + before) Region{kAllFree, nullptr, nullptr};
  return region;
}

}  // namespace

std::mutex& SlabMutex() {
  // It has no destructor: threads free blocks to the very end.
  alignas(std::mutex) static char memory[sizeof(std::mutex)];
  static std::mutex* const mutex = [] {
    // A process that is forked has one thread, whichever held the lock.
    pthread_atfork([] { SlabMutex().lock(); }, [] { SlabMutex().unlock(); },
                   [] { SlabMutex().unlock(); });
    return new (memory) std::mutex;
  }();
  return *mutex;
}

Slab* AcquireSlab(SlabHeap* heap, std::size_t block_size) noexcept {
  char* place = nullptr;
  {
    const std::lock_guard lock(SlabMutex());
    Region* region = first_region;
    if (!region) {
      region = MapRegion();
      if (!region) return nullptr;
      Link(region);
    }
    const auto slab = static_cast<unsigned>(__builtin_ctzll(region->free_slabs));
    region->free_slabs &= region->free_slabs - 1;
    if (region->free_slabs == 0) Unlink(region);
    place = region->Place(slab);
  }
  return new (place) Slab(heap, block_size);
}

void ReleaseSlab(Slab* slab) noexcept {
  Region* const region = Region::Of(slab);
  const std::size_t index =
      static_cast<std::size_t>(reinterpret_cast<char*>(slab) - reinterpret_cast<char*>(region)) /
      Slab::kBytes;
  const std::lock_guard lock(SlabMutex());
  if (region->free_slabs == 0) Link(region);
  region->free_slabs |= std::uint64_t{1} << index;
  if (region->free_slabs != kAllFree) return;
  // An empty region stays where it is, but the system may take its pages when it needs memory. What
  // is read next then mostly finds pages that are there.
  madvise(region->Place(1), Region::kBytes - Slab::kBytes, MADV_FREE);
}

}  // namespace sabcom
