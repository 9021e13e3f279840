#pragma once

#include <sabxml/com.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/com_ptr.h"

namespace sab {

/// Doubly linked list of interface references with opaque positions: the storage of every
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
  LONG_PTR Head() const { return GoTo(head_); }
  LONG_PTR Tail() const { return GoTo(tail_); }

  /// True when the position names an element of this list.
  bool Contains(LONG_PTR position) const { return Lookup(position) != nullptr; }

  // These take positions that Contains().
  IUnknown* At(LONG_PTR position) const { return Lookup(position)->element; }  ///< not counted
  LONG_PTR Next(LONG_PTR position) const { return GoTo(Lookup(position)->next); }
  LONG_PTR Previous(LONG_PTR position) const { return GoTo(Lookup(position)->previous); }

  /// Makes the next insertions succeed, as many as given. Raises std::bad_alloc.
  void Reserve(std::size_t insertions);
  /// Inserts before the element at the position, or at the tail for kNone. Raises std::bad_alloc
  /// and then holds what it held.
  LONG_PTR InsertBefore(LONG_PTR position, ComPtr<IUnknown>&& element);
  /// Unlinks the element.
  ComPtr<IUnknown> Remove(LONG_PTR position);
  /// Puts another element in the place. @return the one that was there
  ComPtr<IUnknown> Replace(LONG_PTR position, ComPtr<IUnknown>&& element);
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
  struct Node {
    Node* next;
    Node* previous;
    IUnknown* element;  // null on the free list
    LONG_PTR position;  // kNone on the free list
  };

  // A node and its place in the order.
  struct Place {
    Node* node;
    std::size_t ordinal;
  };

  // Nodes by their positions. Those whose elements have gone stay in it until it is full.
  struct Table {
    std::vector<Node*> slots;
    std::size_t entered;
  };

  static constexpr std::size_t kNodesPerBlock = 8;

  struct Block {
    std::unique_ptr<Block> next;
    std::array<Node, kNodesPerBlock> nodes;
  };

  static LONG_PTR PositionOf(const Node* node) { return node ? node->position : kNone; }
  // The position of a node about which the next question will probably be.
  LONG_PTR GoTo(Node* node) const {
    if (node) last_ = node;
    return PositionOf(node);
  }
  Node* Lookup(LONG_PTR position) const noexcept {
    return position > kNone && last_ && last_->position == position ? last_ : Search(position);
  }
  Node* Search(LONG_PTR position) const noexcept;
  Node* Scan(LONG_PTR position) const;
  bool MakeTable() const noexcept;
  Node*& SlotFor(LONG_PTR position) const;
  void Enter(Node* node) const;

  LONG_PTR NewPosition() const;
  void AddBlock();
  static void Free(std::unique_ptr<Block> blocks);
  void Free(Node* node);
  void LinkBefore(Node* node, Node* before);
  void Unlink(Node* node);

  std::unique_ptr<Block> blocks_;
  std::size_t capacity_ = 0;
  std::size_t count_ = 0;
  Node* head_ = nullptr;
  Node* tail_ = nullptr;
  Node* free_ = nullptr;
  mutable Node* last_ = nullptr;          // the node that was asked for last; may be free
  mutable Place counted_ = {nullptr, 0};  // the node that AtIndex found last
  mutable std::unique_ptr<Table> table_;  // of a long list, from the first search on
};

}  // namespace sab
