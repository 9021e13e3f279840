#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "xml/characters.h"
#include "xml/encoding.h"
#include "xml/joined_text.h"
#include "xml/node.h"
#include "xml/reader.h"
#include "xml/text.h"

namespace sab::xml {

/// A well-formed document: its bytes and the flat array of its nodes. Nodes are named by index;
/// kNoNode means none, and as a parent the document itself.
class Document {
 public:
  /// Bytes after the text that the reader may look at. Bytes with that much spare capacity are not
  /// copied.
  static constexpr std::size_t kPadding = 16;

  /// Reads a document in any known encoding. Raises Error; std::bad_alloc.
  explicit Document(std::string bytes);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  /// The document element.
  NodeIndex Root() const { return root_; }
  NodeType TypeOf(NodeIndex node) const { return nodes_[node].type; }
  bool IsElement(NodeIndex node) const { return TypeOf(node) == NodeType::kElement; }
  NodeIndex ParentOf(NodeIndex node) const { return nodes_[node].parent; }
  NodeIndex FirstChild(NodeIndex node) const {
    const NodeIndex child = node + 1;
    return child < nodes_.Size() && nodes_[child].parent == node ? child : kNoNode;
  }
  NodeIndex NextSibling(NodeIndex node) const { return nodes_[node].next; }
  NodeIndex FirstChildElement(NodeIndex node) const { return ElementFrom(FirstChild(node)); }
  NodeIndex NextElement(NodeIndex node) const { return ElementFrom(NextSibling(node)); }
  /// The first node that is not inside this one, in document order; the number of nodes at the end.
  NodeIndex EndOf(NodeIndex node) const;
  NodeIndex NodeCount() const { return nodes_.Size(); }

  /// The name as it is written, and without its prefix.
  std::string_view NameOf(NodeIndex element) const {
    const Node& node = nodes_[element];
    return {text_ + node.start + 1, node.name_length};
  }
  std::string_view LocalNameOf(NodeIndex element) const {
    return NameOf(element).substr(nodes_[element].prefix_length);
  }
  bool HasLocalName(NodeIndex element, std::string_view name) const {
    const std::string_view local = LocalNameOf(element);
    // Names of one length mostly differ in their first letter.
    return local.size() == name.size() && local[0] == name[0] && local == name;
  }
  bool IsInNamespace(NodeIndex element) const {
    return (nodes_[element].flags & kInNamespace) != 0;
  }

  /// Appends the text of a node: that of all text below it, joined. White space at the ends is left
  /// out, except in CDATA sections and under xml:space="preserve"; white space alone between two
  /// tags counts as one blank.
  /// @tparam Unit char for UTF-8, else that of UTF-16
  template <class Unit>
  void AppendText(NodeIndex node, std::basic_string<Unit>& out) const {
    if (HasOnlyText(node)) {
      AppendPlain(OnlyTextOf(node), out);
    } else {
      AppendJoinedText(*this, node, out);
    }
  }
  /// Whether the text of an element needs no node of its own.
  bool HasOnlyText(NodeIndex element) const { return (nodes_[element].flags & kHasOnlyText) != 0; }

  /// The text of such an element, which is as it is in the file; it never starts with white space.
  std::string_view OnlyTextOf(NodeIndex element) const {
    const Node& node = nodes_[element];
    const std::size_t start = node.start + std::size_t{node.name_length} + 2;
    std::size_t end = node.end;
    if ((node.flags & kPreservesSpace) == 0) {
      while (Has(text_[end - 1], kSpace)) --end;
    }
    return {text_ + start, end - start};
  }

  /// The value of an attribute by its name as written, normalised; nothing if there is none.
  std::optional<std::u16string> AttributeOf(NodeIndex element, std::string_view name) const;

  Place PlaceOfNode(NodeIndex node) const { return PlaceOf(text_, nodes_[node].start); }

  // What editing needs: places in the decoded text, and the way back to the bytes.
  std::string_view Bytes() const { return {bytes_.data(), size_}; }
  std::string_view TextBytes() const { return {text_, nodes_[0].end}; }
  const Encoding& GetEncoding() const { return encoding_; }
  const Node& At(NodeIndex node) const { return nodes_[node]; }
  /// Where an element's content starts; for <name/> after the tag.
  std::size_t ContentStart(NodeIndex element) const;
  /// After the whole node: its end tag, or what ends a comment, a section or an instruction.
  std::size_t EndOfMarkup(NodeIndex node) const;

 private:
  NodeIndex ElementFrom(NodeIndex node) const {
    while (node != kNoNode && !IsElement(node)) node = NextSibling(node);
    return node;
  }

  std::string bytes_;  // of the file, and the padding
  std::size_t size_;   // without the padding
  Encoding encoding_;
  std::string decoded_;  // where the bytes are not UTF-8
  const char* text_;     // UTF-8 without a byte-order mark
  NodeArray nodes_;
  NodeIndex root_ = kNoNode;
};

}  // namespace sab::xml
