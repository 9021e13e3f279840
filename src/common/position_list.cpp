#include "common/position_list.h"

#include <atomic>
#include <new>
#include <utility>

namespace sab {
namespace {

// One sequence for all lists: two of them never hand out the same stamp at about the same time.
std::uint32_t NextStamp() {
  static std::atomic<std::uint32_t> sequence{0};
  return sequence.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

LONG_PTR PositionList::PositionOf(Index index) const {
  if (index == kNoNode) return kNone;
  return static_cast<LONG_PTR>(NodeAt(index).stamp) << kIndexBits |
         static_cast<LONG_PTR>(index + 1);
}

bool PositionList::Contains(LONG_PTR position) const {
  if (position <= 0) return false;
  const Index index = IndexOf(position);
  if (index / kNodesPerBlock >= blocks_.size()) return false;
  return NodeAt(index).element && PositionOf(index) == position;
}

PositionList::Index PositionList::Acquire() {
  if (free_ == kNoNode) {
    const auto first = static_cast<Index>(blocks_.size()) * kNodesPerBlock;
    if (first > kMostNodes - kNodesPerBlock) throw std::bad_alloc();
    blocks_.push_back(std::make_unique<Node[]>(kNodesPerBlock));
    for (Index slot = kNodesPerBlock; slot-- > 0;) Free(first + slot);
  }
  return std::exchange(free_, NodeAt(free_).next);
}

void PositionList::Free(Index index) {
  NodeAt(index) = {std::exchange(free_, index), kNoNode, nullptr, 0};
}

void PositionList::LinkBefore(Index index, Index before) {
  Node& node = NodeAt(index);
  node.next = before;
  node.previous = before == kNoNode ? tail_ : NodeAt(before).previous;
  (node.previous == kNoNode ? head_ : NodeAt(node.previous).next) = index;
  (before == kNoNode ? tail_ : NodeAt(before).previous) = index;
}

void PositionList::Unlink(Index index) {
  const Node& node = NodeAt(index);
  (node.previous == kNoNode ? head_ : NodeAt(node.previous).next) = node.next;
  (node.next == kNoNode ? tail_ : NodeAt(node.next).previous) = node.previous;
}

LONG_PTR PositionList::InsertBefore(LONG_PTR position, IUnknown* element) {
  const Index index = Acquire();
  element->AddRef();
  NodeAt(index).element = element;
  NodeAt(index).stamp = NextStamp() & ((std::uint32_t{1} << kStampBits) - 1);
  LinkBefore(index, position == kNone ? kNoNode : IndexOf(position));
  ++count_;
  return PositionOf(index);
}

IUnknown* PositionList::Remove(LONG_PTR position) {
  const Index index = IndexOf(position);
  IUnknown* const element = NodeAt(index).element;
  Unlink(index);
  Free(index);
  if (--count_ == 0) {
    blocks_ = std::vector<std::unique_ptr<Node[]>>();
    free_ = kNoNode;
  }
  return element;
}

void PositionList::Replace(LONG_PTR position, IUnknown* element) {
  element->AddRef();
  std::exchange(NodeOf(position).element, element)->Release();
}

void PositionList::MoveBefore(LONG_PTR position, LONG_PTR before) {
  if (position == before) return;
  const Index index = IndexOf(position);
  Unlink(index);
  LinkBefore(index, before == kNone ? kNoNode : IndexOf(before));
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
  tail_ = free_ = kNoNode;
  count_ = 0;
  while (index != kNoNode) {
    const Node& node = blocks[index / kNodesPerBlock][index % kNodesPerBlock];
    index = node.next;
    node.element->Release();
  }
}

LONG_PTR PositionList::Find(const IUnknown* element, LONG_PTR after) const {
  Index index = after == kNone ? head_ : NodeOf(after).next;
  while (index != kNoNode && NodeAt(index).element != element) index = NodeAt(index).next;
  return PositionOf(index);
}

LONG_PTR PositionList::AtIndex(std::size_t index) const {
  if (index >= count_) return kNone;
  Index node;
  if (index < count_ / 2) {
    for (node = head_; index > 0; --index) node = NodeAt(node).next;
  } else {
    for (node = tail_, index = count_ - 1 - index; index > 0; --index) node = NodeAt(node).previous;
  }
  return PositionOf(node);
}

}  // namespace sab
