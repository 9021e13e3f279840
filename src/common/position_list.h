#pragma once

#include <sabxml/com.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "base/com_ptr.h"

namespace sab {

/// Doubly linked list of interface references with opaque positions: the storage behind every
/// collection. Nodes come from blocks and return to a free list, so adding and removing costs no
/// allocation of its own; when the list becomes empty all blocks are given back.
///
/// A position is a number that names one stay of one element in one list. Numbers come from one
/// sequence for all lists of the process, so a position that is stale, foreign or made up is
/// recognised instead of followed. The sequence begins again after 2^53 insertions, after 2^31 in a
/// 32-bit process; even then no position names two elements of one list.
///
/// Elements are foreign code. Only Clear and the destructor call them; all else takes and hands out
/// references, so that no call can change the list in the middle of a change.
class PositionList {
 public:
  static constexpr LONG_PTR kNone = 0;

  PositionList() = default;
  PositionList(const PositionList&) = delete;
  PositionList& operator=(const PositionList&) = delete;
  ~PositionList();

  std::size_t Count() const { return count_; }
  LONG_PTR Head() const { return PositionOf(head_); }
  LONG_PTR Tail() const { return PositionOf(tail_); }

  /// True when the position names an element of this list.
  bool Contains(LONG_PTR position) const { return Lookup(position) != kNoNode; }

  // These take positions that Contains().
  IUnknown* At(LONG_PTR position) const { return NodeOf(position).element; }  ///< not counted
  LONG_PTR Next(LONG_PTR position) const { return GoTo(NodeOf(position).next); }
  LONG_PTR Previous(LONG_PTR position) const { return GoTo(NodeOf(position).previous); }

  /// Makes the next insertions succeed, as many as given. Raises std::bad_alloc.
  void Reserve(std::size_t insertions);
  /// Inserts before the element at the position, or at the tail for kNone. Raises std::bad_alloc
  /// and then holds what it held.
  LONG_PTR InsertBefore(LONG_PTR position, ComPtr<IUnknown> element);
  /// Unlinks the element.
  ComPtr<IUnknown> Remove(LONG_PTR position);
  /// Puts another element in the place. @return the one that was there
  ComPtr<IUnknown> Replace(LONG_PTR position, ComPtr<IUnknown> element);
  /// Moves the element before another one, or to the tail for kNone. Its position stays valid.
  void MoveBefore(LONG_PTR position, LONG_PTR before);
  /// Exchanges the places of two elements; positions keep naming the same elements.
  void Swap(LONG_PTR first, LONG_PTR second);
  /// Releases every element and every block.
  void Clear();

  /// First element after a position (from the head for kNone) that is this very pointer, or kNone.
  LONG_PTR Find(const IUnknown* element, LONG_PTR after) const;
  /// Position of the zero-based index; kNone past the end. Asking for neighbours in turn, in either
  /// direction, costs one step each.
  LONG_PTR AtIndex(std::size_t index) const;

 private:
  using Index = std::uint32_t;

  struct Node {
    Index next;
    Index previous;
    IUnknown* element;  // null on the free list
    LONG_PTR position;  // kNone on the free list
  };

  // A node and its place in the order.
  struct Place {
    Index node;
    std::size_t ordinal;
  };

  static constexpr Index kNoNode = ~Index{0};
  static constexpr Index kNodesPerBlock = 8;
  static constexpr Index kMostNodes = Index{1} << 30;

  Node& NodeAt(Index index) const {
    return blocks_[index / kNodesPerBlock][index % kNodesPerBlock];
  }
  Node& NodeOf(LONG_PTR position) const { return NodeAt(Lookup(position)); }
  LONG_PTR PositionOf(Index index) const {
    return index == kNoNode ? kNone : NodeAt(index).position;
  }
  // The position of a node about which the next question will probably be.
  LONG_PTR GoTo(Index index) const {
    if (index != kNoNode) last_ = index;
    return PositionOf(index);
  }

  std::size_t NodeCount() const { return blocks_.size() * kNodesPerBlock; }
  LONG_PTR NewPosition() const;
  Index Lookup(LONG_PTR position) const noexcept;
  Index Scan(LONG_PTR position) const;
  bool MakeTable() const noexcept;
  std::size_t SlotFor(LONG_PTR position) const;
  void Enter(Index index) const;

  void AddBlock();
  void Free(Index index);
  void LinkBefore(Index index, Index before);
  void Unlink(Index index);

  std::vector<std::unique_ptr<Node[]>> blocks_;
  std::size_t count_ = 0;
  Index head_ = kNoNode;
  Index tail_ = kNoNode;
  Index free_ = kNoNode;
  mutable Index last_ = 0;                // the node that was asked for last; may be free
  mutable Place counted_ = {kNoNode, 0};  // the node that AtIndex found last
  // Nodes by their positions, in a list of several blocks of which a position was looked up. Nodes
  // whose elements have gone stay in it until it is full and made anew.
  mutable std::vector<Index> table_;
  mutable std::size_t entered_ = 0;
};

}  // namespace sab
