#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace sab::xml {

using NodeIndex = std::uint32_t;
inline constexpr NodeIndex kNoNode = 0;  // also the document itself, which is no child

enum class NodeType : std::uint8_t { kDocument, kElement, kText, kCData, kComment, kInstruction };

enum NodeFlags : std::uint8_t {
  kInNamespace = 1,     // an element whose name has a namespace
  kPreservesSpace = 2,  // inside xml:space="preserve"
  kNeedsDecoding = 4,   // the text has references or carriage returns
  kIsEmptyTag = 8,      // <name/>
  kHasOnlyText = 16,    // an element without attributes whose one child, plain text, is no node
};

/// A node of the flat document: places in the text and links to other nodes. Children follow their
/// parent, so the first child of a node is the next one if that names it as its parent.
struct Node {
  std::uint32_t start;  ///< of elements the <, of others their first byte
  std::uint32_t end;    ///< of elements the </ or, without one, after the tag; of others their end
  NodeIndex parent;
  NodeIndex next;               ///< sibling
  std::uint16_t name_length;    ///< of elements, the whole name as written
  std::uint16_t prefix_length;  ///< of elements, the prefix with its colon
  NodeType type;
  std::uint8_t flags;
  std::uint16_t indentation;  ///< of elements, white space before the tag; 0 if it is not known
};
static_assert(sizeof(Node) == 24);

/// An array of nodes that grows in place where the system can do so: copying it would double what a
/// large document takes.
class NodeArray {
 public:
  NodeArray() = default;
  NodeArray(NodeArray&& other) noexcept
      : nodes_(std::exchange(other.nodes_, nullptr)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  NodeArray& operator=(NodeArray&& other) noexcept {
    std::swap(nodes_, other.nodes_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
  }
  ~NodeArray() { std::free(nodes_); }

  Node& operator[](NodeIndex index) { return nodes_[index]; }
  const Node& operator[](NodeIndex index) const { return nodes_[index]; }
  std::uint32_t Size() const { return size_; }

  /// Makes room for so many nodes.
  void Reserve(std::size_t wanted) {
    if (wanted > UINT32_MAX) throw std::bad_alloc();
    void* const grown = std::realloc(nodes_, wanted * sizeof(Node));
    if (!grown) throw std::bad_alloc();
    nodes_ = static_cast<Node*>(grown);
    capacity_ = static_cast<std::uint32_t>(wanted);
  }

  NodeIndex Append(const Node& node) {
    if (size_ == capacity_) Reserve(64 + size_ + std::size_t{size_} / 2);
    nodes_[size_] = node;
    return size_++;
  }

 private:
  Node* nodes_ = nullptr;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 0;
};

}  // namespace sab::xml
