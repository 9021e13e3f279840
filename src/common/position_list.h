#pragma once

#include <sabxml/com.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace sab {

/// Doubly linked list of interface references with opaque positions: the storage behind every
/// collection. Nodes come from blocks and return to a free list, so adding and removing costs no
/// allocation of its own; when the list becomes empty all blocks are given back.
///
/// A position names one stay of one element in one list. It holds the node's number and a stamp
/// that is different for every stay in any list of the process, so a position that is stale,
/// foreign or made up is recognised instead of followed.
class PositionList {
 public:
  static constexpr LONG_PTR kNone = 0;

  PositionList() = default;
  PositionList(const PositionList&) = delete;
  PositionList& operator=(const PositionList&) = delete;
  ~PositionList() { Clear(); }

  std::size_t Count() const { return count_; }
  LONG_PTR Head() const { return PositionOf(head_); }
  LONG_PTR Tail() const { return PositionOf(tail_); }

  /// True when the position names an element of this list.
  bool Contains(LONG_PTR position) const;

  // These take positions that Contains().
  IUnknown* At(LONG_PTR position) const { return NodeOf(position).element; }  ///< not counted
  LONG_PTR Next(LONG_PTR position) const { return PositionOf(NodeOf(position).next); }
  LONG_PTR Previous(LONG_PTR position) const { return PositionOf(NodeOf(position).previous); }

  /// Inserts before the element at the position, or at the tail for kNone; the list adds a
  /// reference. Raises std::bad_alloc and then holds what it held.
  LONG_PTR InsertBefore(LONG_PTR position, IUnknown* element);
  /// Unlinks the element and hands its reference to the caller.
  IUnknown* Remove(LONG_PTR position);
  /// Puts another element in the place; the list adds a reference and drops the old one.
  void Replace(LONG_PTR position, IUnknown* element);
  /// Moves the element before another one, or to the tail for kNone. Its position stays valid.
  void MoveBefore(LONG_PTR position, LONG_PTR before);
  /// Exchanges the places of two elements; positions keep naming the same elements.
  void Swap(LONG_PTR first, LONG_PTR second);
  /// Releases every element and every block.
  void Clear();

  /// First element after a position (from the head for kNone) that is this very pointer, or kNone.
  LONG_PTR Find(const IUnknown* element, LONG_PTR after) const;
  /// Position of the zero-based index; kNone past the end.
  LONG_PTR AtIndex(std::size_t index) const;

 private:
  using Index = std::uint32_t;

  struct Node {
    Index next;
    Index previous;
    IUnknown* element;  // null on the free list
    std::uint32_t stamp;
  };

  static constexpr Index kNoNode = ~Index{0};
  static constexpr Index kNodesPerBlock = 8;
  // A position is (stamp, index + 1). It stays below 2^53, so that script engines which know no
  // 64-bit integers carry it exactly, and positive.
  static constexpr unsigned kIndexBits = sizeof(LONG_PTR) == 8 ? 30 : 21;
  static constexpr unsigned kStampBits = sizeof(LONG_PTR) == 8 ? 23 : 10;
  static constexpr Index kMostNodes = (Index{1} << kIndexBits) - 2;

  Node& NodeAt(Index index) const {
    return blocks_[index / kNodesPerBlock][index % kNodesPerBlock];
  }
  static Index IndexOf(LONG_PTR position) {
    return static_cast<Index>(position & ((LONG_PTR{1} << kIndexBits) - 1)) - 1;
  }
  Node& NodeOf(LONG_PTR position) const { return NodeAt(IndexOf(position)); }
  LONG_PTR PositionOf(Index index) const;

  Index Acquire();
  void Free(Index index);
  void LinkBefore(Index index, Index before);
  void Unlink(Index index);

  std::vector<std::unique_ptr<Node[]>> blocks_;
  std::size_t count_ = 0;
  Index head_ = kNoNode;
  Index tail_ = kNoNode;
  Index free_ = kNoNode;
};

}  // namespace sab
