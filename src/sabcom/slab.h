#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <new>

namespace sabcom {

class SlabHeap;

/// A free block holds the link to the next one.
struct FreeLink {
  FreeLink* next;
};

/// Blocks of one size in one aligned stretch of memory, whose head this is. It belongs to a heap,
/// and so to one thread; other threads hand blocks back through a list of their own.
class Slab {
 public:
  static constexpr std::size_t kBytes = std::size_t{64} << 10;

  static Slab* Of(void* block) {
    return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(kBytes - 1));
  }

  Slab(SlabHeap* owner, std::size_t block_size)
      : heap(owner),
        size(static_cast<std::uint32_t>(block_size)),
        unused_(reinterpret_cast<char*>(this) + kHead) {}

  /// A block, or null when all are in use.
  void* Take() {
    if (FreeLink* const link = free_) {
      free_ = link->next;
      ++used_;
      return link;
    }
    if (unused_ + size > reinterpret_cast<const char*>(this) + kBytes) return nullptr;
    char* const block = unused_;
    unused_ += size;
    ++used_;
    return block;
  }
  /// By the thread that owns the heap.
  /// @return whether as many blocks are in use now as SetThreshold named
  bool Free(void* block) {
    free_ = new (block) FreeLink{free_};
    return --used_ == threshold_;
  }
  static constexpr std::uint32_t kNever = ~std::uint32_t{0};
  void SetThreshold(std::uint32_t blocks_in_use) { threshold_ = blocks_in_use; }
  std::uint32_t BlocksInUse() const { return used_; }
  /// By any other thread.
  void FreeFromOtherThread(void* block) {
    auto* const link = new (block) FreeLink{freed_by_others_.load(std::memory_order_relaxed)};
    while (!freed_by_others_.compare_exchange_weak(link->next, link, std::memory_order_release,
                                                   std::memory_order_relaxed)) {
    }
  }
  /// Takes in what other threads have handed back.
  void Collect() {
    if (!freed_by_others_.load(std::memory_order_relaxed)) return;
    FreeLink* link = freed_by_others_.exchange(nullptr, std::memory_order_acquire);
    while (link) {
      FreeLink* const following = link->next;
      Free(link);
      link = following;
    }
  }
  bool IsEmpty() const { return used_ == 0; }

  SlabHeap* const heap;
  const std::uint32_t size;  ///< of a block
  Slab* next = nullptr;      ///< in a list of the heap
  Slab* previous = nullptr;

 private:
  static constexpr std::size_t kHead = 128;  // a line for the owner, one for the others

  std::uint32_t used_ = 0;
  std::uint32_t threshold_ = kNever;
  FreeLink* free_ = nullptr;
  char* unused_;  // blocks from here on were never taken
  alignas(64) std::atomic<FreeLink*> freed_by_others_{nullptr};
};
static_assert(sizeof(Slab) <= 128);

/// Guards what threads share: the free slabs, and the heaps without a thread.
std::mutex& SlabMutex();

/// Where slabs come from: stretches of memory of the system's, each for several slabs. Any thread
/// may call these.
Slab* AcquireSlab(SlabHeap* heap, std::size_t block_size) noexcept;
void ReleaseSlab(Slab* slab) noexcept;

}  // namespace sabcom
