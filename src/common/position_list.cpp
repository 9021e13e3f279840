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
  while (count_ != 0) Clear();
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

PositionList::Index PositionList::Lookup(LONG_PTR position) const noexcept {
  if (position <= kNone || count_ == 0) return kNoNode;
  if (last_ < NodeCount() && NodeAt(last_).position == position) return last_;
  Index found = kNoNode;
  if (blocks_.size() == 1 || (table_.empty() && !MakeTable())) {
    found = Scan(position);
  } else {
    found = table_[SlotFor(position)];
  }
  if (found != kNoNode) last_ = found;
  return found;
}

PositionList::Index PositionList::Scan(LONG_PTR position) const {
  for (Index index = 0; index < NodeCount(); ++index) {
    if (NodeAt(index).position == position) return index;
  }
  return kNoNode;
}

// A table of which three quarters are free; false without memory.
bool PositionList::MakeTable() const noexcept try {
  table_.assign(std::bit_ceil(4 * count_), kNoNode);
  entered_ = 0;
  for (Index index = head_; index != kNoNode; index = NodeAt(index).next) Enter(index);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

// Where the table has the node of a position, or where it would have it.
std::size_t PositionList::SlotFor(LONG_PTR position) const {
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
  const std::uint64_t hash = static_cast<std::uint64_t>(position) * kSpread;
  auto slot = static_cast<std::size_t>(hash >> (64 - std::countr_zero(table_.size())));
  while (table_[slot] != kNoNode && NodeAt(table_[slot]).position != position) {
    slot = (slot + 1) & (table_.size() - 1);
  }
  return slot;
}

void PositionList::Enter(Index index) const {
  if (2 * ++entered_ > table_.size()) {
    table_.clear();  // made anew when it is needed
  } else {
    table_[SlotFor(NodeAt(index).position)] = index;
  }
}

void PositionList::AddBlock() {
  const auto first = static_cast<Index>(NodeCount());
  if (first > kMostNodes - kNodesPerBlock) throw std::bad_alloc();
  blocks_.push_back(std::make_unique<Node[]>(kNodesPerBlock));
  for (Index slot = kNodesPerBlock; slot-- > 0;) Free(first + slot);
}

void PositionList::Reserve(std::size_t insertions) {
  while (NodeCount() - count_ < insertions) AddBlock();
}

void PositionList::Free(Index index) {
  NodeAt(index) = {std::exchange(free_, index), kNoNode, nullptr, kNone};
}

void PositionList::LinkBefore(Index index, Index before) {
  Node& node = NodeAt(index);
  node.next = before;
  node.previous = before == kNoNode ? tail_ : NodeAt(before).previous;
  (node.previous == kNoNode ? head_ : NodeAt(node.previous).next) = index;
  (before == kNoNode ? tail_ : NodeAt(before).previous) = index;
  if (before == kNoNode) return;
  if (before == counted_.node || node.previous == kNoNode) {
    ++counted_.ordinal;
  } else {
    counted_.node = kNoNode;
  }
}

void PositionList::Unlink(Index index) {
  const Node& node = NodeAt(index);
  (node.previous == kNoNode ? head_ : NodeAt(node.previous).next) = node.next;
  (node.next == kNoNode ? tail_ : NodeAt(node.next).previous) = node.previous;
  if (index == counted_.node) {
    counted_.node = node.next;
  } else if (node.previous == kNoNode) {
    --counted_.ordinal;
  } else if (node.next != kNoNode) {
    counted_.node = kNoNode;
  }
}

LONG_PTR PositionList::InsertBefore(LONG_PTR position, ComPtr<IUnknown> element) {
  const Index before = position == kNone ? kNoNode : Lookup(position);
  if (free_ == kNoNode) AddBlock();
  const Index index = std::exchange(free_, NodeAt(free_).next);
  NodeAt(index).position = NewPosition();
  NodeAt(index).element = element.Detach();
  LinkBefore(index, before);
  ++count_;
  if (!table_.empty()) Enter(index);
  return GoTo(index);
}

ComPtr<IUnknown> PositionList::Remove(LONG_PTR position) {
  const Index index = Lookup(position);
  ComPtr<IUnknown> element;
  element.Attach(NodeAt(index).element);
  Unlink(index);
  Free(index);
  if (--count_ == 0) Clear();
  return element;
}

ComPtr<IUnknown> PositionList::Replace(LONG_PTR position, ComPtr<IUnknown> element) {
  ComPtr<IUnknown> old;
  old.Attach(std::exchange(NodeOf(position).element, element.Detach()));
  return old;
}

void PositionList::MoveBefore(LONG_PTR position, LONG_PTR before) {
  if (position == before) return;
  const Index index = Lookup(position);
  const Index next = before == kNone ? kNoNode : Lookup(before);
  Unlink(index);
  LinkBefore(index, next);
}

void PositionList::Swap(LONG_PTR first, LONG_PTR second) {
  if (first == second) return;
  const LONG_PTR after_second = Next(second);
  MoveBefore(second, first);
  MoveBefore(first, after_second == first ? second : after_second);
}

void PositionList::Clear() {
  // Releasing an element may come back to this list, which must then be empty already.
  const std::vector<std::unique_ptr<Node[]>> blocks = std::exchange(blocks_, {});
  Index index = std::exchange(head_, kNoNode);
  tail_ = free_ = counted_.node = kNoNode;
  count_ = 0;
  table_ = {};
  while (index != kNoNode) {
    const Node& node = blocks[index / kNodesPerBlock][index % kNodesPerBlock];
    index = node.next;
    node.element->Release();
  }
}

LONG_PTR PositionList::Find(const IUnknown* element, LONG_PTR after) const {
  Index index = after == kNone ? head_ : NodeOf(after).next;
  while (index != kNoNode && NodeAt(index).element != element) index = NodeAt(index).next;
  return GoTo(index);
}

LONG_PTR PositionList::AtIndex(std::size_t index) const {
  if (index >= count_) return kNone;
  const auto distance = [index](const Place& place) {
    return place.ordinal > index ? place.ordinal - index : index - place.ordinal;
  };
  Place place{head_, 0};
  if (const Place tail{tail_, count_ - 1}; distance(tail) < distance(place)) place = tail;
  if (counted_.node != kNoNode && distance(counted_) < distance(place)) place = counted_;
  for (; place.ordinal < index; ++place.ordinal) place.node = NodeAt(place.node).next;
  for (; place.ordinal > index; --place.ordinal) place.node = NodeAt(place.node).previous;
  counted_ = place;
  return GoTo(place.node);
}

}  // namespace sab
