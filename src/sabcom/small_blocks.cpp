#include "sabcom/small_blocks.h"

#include <pthread.h>

#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include "sabcom/slab.h"

namespace sabcom {

/// The slabs of one thread. When it ends, its blocks live on, and the next thread that starts takes
/// the heap over.
class SlabHeap {
 public:
  static constexpr std::size_t kGranularity = 16;
  static constexpr std::size_t kMaxBlockSize = 512;  // larger blocks are the system's

  void* Allocate(std::size_t size) {
    Family& family = families_[FamilyOf(size)];
    if (family.current) {
      if (void* const block = family.current->Take()) return block;
    }
    return AllocateFromOtherSlab(family, RoundedBlockSize(size));
  }

  void Free(Slab* slab, void* block) {
    if (slab->Free(block)) OnThreshold(slab);
  }

  SlabHeap* next = nullptr;  ///< of those without a thread

 private:
  // The slabs for blocks of one size: one to take from, and the others, those first that the thread
  // has freed blocks of.
  struct Family {
    Slab* current = nullptr;
    Slab* first = nullptr;
    Slab* last = nullptr;

    void AddFirst(Slab* slab) {
      slab->previous = nullptr;
      slab->next = first;
      (first ? first->previous : last) = slab;
      first = slab;
    }
    void AddFull(Slab* slab) {
      slab->SetThreshold(slab->BlocksInUse() - 1);
      slab->next = nullptr;
      slab->previous = last;
      (last ? last->next : first) = slab;
      last = slab;
    }
    void Remove(Slab* slab) {
      (slab->previous ? slab->previous->next : first) = slab->next;
      (slab->next ? slab->next->previous : last) = slab->previous;
    }
  };

  static std::size_t FamilyOf(std::size_t size) { return (size - 1) / kGranularity; }

  // A slab of a list that was full has a free block, or it is empty.
  void OnThreshold(Slab* slab) {
    Family& family = families_[FamilyOf(slab->size)];
    family.Remove(slab);
    if (slab->IsEmpty()) {
      ReleaseSlab(slab);
    } else {
      slab->SetThreshold(0);
      family.AddFirst(slab);
    }
  }

  void* AllocateFromOtherSlab(Family& family, std::size_t block_size) {
    if (family.current) family.AddFull(std::exchange(family.current, nullptr));
    // Full slabs take turns: other threads may have handed blocks back.
    constexpr int kMaxRotations = 4;
    for (int turn = 0; turn < kMaxRotations && family.first; ++turn) {
      Slab* const slab = family.first;
      family.Remove(slab);
      slab->Collect();
      if (void* const block = slab->Take()) {
        slab->SetThreshold(Slab::kNever);
        family.current = slab;
        return block;
      }
      family.AddFull(slab);
    }
    family.current = AcquireSlab(this, block_size);
    return family.current ? family.current->Take() : nullptr;
  }

  Family families_[kMaxBlockSize / kGranularity];
};

namespace {

// The heap of the thread. A plain pointer, so that it can be read to the very end of the thread.
[[gnu::tls_model("initial-exec")]] thread_local SlabHeap* own_heap = nullptr;

SlabHeap* heaps_without_thread = nullptr;

void LeaveHeap(void* heap) {
  const std::lock_guard lock(SlabMutex());
  own_heap = nullptr;
  auto* const left = static_cast<SlabHeap*>(heap);
  left->next = std::exchange(heaps_without_thread, left);
}

// The key whose destructor runs when a thread ends. Made with the first heap; null while the
// process has no key left.
const pthread_key_t* ThreadEnd() {
  static pthread_key_t key{};
  static bool is_made = false;
  const std::lock_guard lock(SlabMutex());
  if (!is_made) is_made = pthread_key_create(&key, LeaveHeap) == 0;
  return is_made ? &key : nullptr;
}

SlabHeap* EnterHeap() {
  const pthread_key_t* const end = ThreadEnd();
  if (!end) return nullptr;
  SlabHeap* heap = nullptr;
  {
    const std::lock_guard lock(SlabMutex());
    heap = heaps_without_thread;
    if (heap) heaps_without_thread = heap->next;
  }
  if (!heap) heap = new (std::nothrow) SlabHeap;
  if (!heap) return nullptr;
  if (pthread_setspecific(*end, heap) != 0) {
    LeaveHeap(heap);
    return nullptr;
  }
  own_heap = heap;
  return heap;
}

}  // namespace

void* AllocateBlock(std::size_t size) noexcept {
  if (size == 0) size = 1;
  if (size > SlabHeap::kMaxBlockSize) return std::malloc(size);
  SlabHeap* const heap = own_heap ? own_heap : EnterHeap();
  return heap ? heap->Allocate(size) : nullptr;
}

void FreeBlock(void* block, std::size_t size) noexcept {
  if (size > SlabHeap::kMaxBlockSize) {
    std::free(block);
    return;
  }
  Slab* const slab = Slab::Of(block);
  // A heap without a thread takes blocks as another thread's.
  if (slab->heap == own_heap) {
    slab->heap->Free(slab, block);
  } else {
    slab->FreeFromOtherThread(block);
  }
}

}  // namespace sabcom
