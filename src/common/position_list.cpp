#include "common/position_list.h"

#include <atomic>
#include <bit>
#include <new>
#include <utility>

namespace sab {
namespace {

// Positions stay below 2^53, which script engines that know no 64-bit integers carry exactly.
constexpr unsigned kPositionBits = sizeof(LONG_PTR) == 8 ? 53 : 31;
constexpr std::uint64_t kPositionMask = (std::uint64_t{1} << kPositionBits) - 1;
// Small numbers are what callers pass who take an index for a position.
constexpr LONG_PTR kFirstPosition = 0x10000;

}  // namespace

PositionList::~PositionList() {
  // An element may put another one in its place as it goes.
  do {
    Clear();
  } while (count_ != 0);
}

LONG_PTR PositionList::NewPosition() const {
  static std::atomic<std::uint64_t> sequence{kFirstPosition};
  for (;;) {
    const std::uint64_t number = sequence.fetch_add(1, std::memory_order_relaxed);
    const auto position = static_cast<LONG_PTR>(number & kPositionMask);
    if (number <= kPositionMask) return position;
    if (position >= kFirstPosition && !Contains(position)) return position;
  }
}

PositionList::Node* PositionList::Search(LONG_PTR position) const noexcept {
  if (position <= kNone || count_ == 0) return nullptr;
  const bool has_table = capacity_ > kNodesPerBlock && (table_ || MakeTable());
  Node* const found = has_table ? SlotFor(position) : Scan(position);
  if (found) last_ = found;
  return found;
}

PositionList::Node* PositionList::Scan(LONG_PTR position) const {
  Node* node = head_;
  while (node && node->position != position) node = node->next;
  return node;
}

// A table of which three quarters are free; false without memory.
bool PositionList::MakeTable() const noexcept try {
  table_ = std::make_unique<Table>(Table{std::vector<Node*>(std::bit_ceil(4 * count_)), 0});
  for (Node* node = head_; node; node = node->next) Enter(node);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

// Where the table has the node of a position, or where it would have it.
PositionList::Node*& PositionList::SlotFor(LONG_PTR position) const {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
  const std::uint64_t hash = static_cast<std::uint64_t>(position) * kMultiplier;
  std::vector<Node*>& slots = table_->slots;
  auto slot = static_cast<std::size_t>(hash >> (64 - std::countr_zero(slots.size())));
  while (slots[slot] && slots[slot]->position != position) slot = (slot + 1) & (slots.size() - 1);
  return slots[slot];
}

void PositionList::Enter(Node* node) const {
  if (2 * ++table_->entered > table_->slots.size()) {
    table_.reset();  // made anew when it is needed
  } else {
    SlotFor(node->position) = node;
  }
}

void PositionList::AddBlock() {
  auto block = std::make_unique_for_overwrite<Block>();
  block->next = std::move(blocks_);
  blocks_ = std::move(block);
  capacity_ += kNodesPerBlock;
  for (std::size_t i = kNodesPerBlock; i-- > 0;) Free(&blocks_->nodes[i]);
}

// One by one: were each to free the next, a long list would overflow the stack.
void PositionList::Free(std::unique_ptr<Block> blocks) {
  while (blocks) blocks = std::move(blocks->next);
}

void PositionList::Reserve(std::size_t insertions) {
  while (capacity_ - count_ < insertions) AddBlock();
}

void PositionList::Free(Node* node) {
  *node = {std::exchange(free_, node), nullptr, nullptr, kNone};
}

void PositionList::LinkBefore(Node* node, Node* before) {
  node->next = before;
  node->previous = before ? before->previous : tail_;
  (node->previous ? node->previous->next : head_) = node;
  (before ? before->previous : tail_) = node;
  if (!before) return;
  if (before == counted_.node || !node->previous) {
    ++counted_.ordinal;
  } else {
    counted_.node = nullptr;
  }
}

void PositionList::Unlink(Node* node) {
  (node->previous ? node->previous->next : head_) = node->next;
  (node->next ? node->next->previous : tail_) = node->previous;
  if (node == counted_.node) {
    counted_.node = node->next;
  } else if (!node->previous) {
    --counted_.ordinal;
  } else if (node->next) {
    counted_.node = nullptr;
  }
}

LONG_PTR PositionList::InsertBefore(LONG_PTR position, ComPtr<IUnknown>&& element) {
  Node* const before = position == kNone ? nullptr : Lookup(position);
  if (!free_) AddBlock();
  Node* const node = std::exchange(free_, free_->next);
  node->position = NewPosition();
  node->element = element.Detach();
  LinkBefore(node, before);
  ++count_;
  if (table_) Enter(node);
  return GoTo(node);
}

ComPtr<IUnknown> PositionList::Remove(LONG_PTR position) {
  Node* const node = Lookup(position);
  ComPtr<IUnknown> element;
  element.Attach(node->element);
  Unlink(node);
  Free(node);
  if (--count_ == 0) Clear();
  return element;
}

ComPtr<IUnknown> PositionList::Replace(LONG_PTR position, ComPtr<IUnknown>&& element) {
  ComPtr<IUnknown> old;
  old.Attach(std::exchange(Lookup(position)->element, element.Detach()));
  return old;
}

void PositionList::MoveBefore(LONG_PTR position, LONG_PTR before) {
  if (position == before) return;
  Node* const node = Lookup(position);
  Node* const next = before == kNone ? nullptr : Lookup(before);
  Unlink(node);
  LinkBefore(node, next);
}

void PositionList::Swap(LONG_PTR first, LONG_PTR second) {
  if (first == second) return;
  const LONG_PTR after_second = Next(second);
  MoveBefore(second, first);
  MoveBefore(first, after_second == first ? second : after_second);
}

void PositionList::Clear() {
  // Releasing an element may come back to this list, which must then be empty already.
  std::unique_ptr<Block> blocks = std::move(blocks_);
  const Node* node = std::exchange(head_, nullptr);
  tail_ = free_ = last_ = counted_.node = nullptr;
  capacity_ = count_ = 0;
  table_.reset();
  for (; node; node = node->next) node->element->Release();
  Free(std::move(blocks));
}

LONG_PTR PositionList::Find(const IUnknown* element, LONG_PTR after) const {
  Node* node = after == kNone ? head_ : Lookup(after)->next;
  while (node && node->element != element) node = node->next;
  return GoTo(node);
}

LONG_PTR PositionList::AtIndex(std::size_t index) const {
  if (index >= count_) return kNone;
  const auto distance = [index](const Place& place) {
    return place.ordinal > index ? place.ordinal - index : index - place.ordinal;
  };
  Place place{head_, 0};
  if (const Place tail{tail_, count_ - 1}; distance(tail) < distance(place)) place = tail;
  if (counted_.node && distance(counted_) < distance(place)) place = counted_;
  for (; place.ordinal < index; ++place.ordinal) place.node = place.node->next;
  for (; place.ordinal > index; --place.ordinal) place.node = place.node->previous;
  counted_ = place;
  return GoTo(place.node);
}

}  // namespace sab
