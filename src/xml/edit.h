#pragma once

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "xml/document.h"

namespace sab::xml {

/// An element that is to be written: its name, its text or its children.
class NewElement {
 public:
  NewElement(std::string_view name, std::u16string_view text) : name_(name), text_(text) {}

  /// Adds a child behind the last one; it lives as long as this element.
  NewElement& Append(std::string_view name, std::u16string_view text) {
    return children_.emplace_back(name, text);
  }

 private:
  friend class Editor;

  std::string name_;
  std::u16string text_;
  std::deque<NewElement> children_;  // which leaves its elements where they are
};

/// Changes to a document, written into a copy of its bytes. Every byte outside of what is changed
/// is kept; new elements are indented like their neighbours, or stand in line where these do.
class Editor {
 public:
  explicit Editor(const Document& document) : document_(document) {}

  /// Adds an element behind the last child of an element; it lives as long as the editor.
  NewElement& Append(NodeIndex parent, std::string_view name, std::u16string_view text);
  /// Replaces the content of an element by a text.
  void SetText(NodeIndex element, std::u16string_view text);
  /// Removes an element, and its line where it stands alone on it.
  void Remove(NodeIndex element);

  bool IsEmpty() const { return added_.empty() && texts_.empty() && removed_.empty(); }

  /// The bytes of the changed document in its own encoding. Raises Error for a text that XML cannot
  /// hold; std::bad_alloc.
  std::string Serialise() const;

 private:
  // Text bytes [from, to) that give way to others.
  struct Splice {
    std::size_t from;
    std::size_t to;
    std::string text;
  };

  bool IsInsideRemoved(NodeIndex node) const;
  Splice SpliceForAdded(NodeIndex parent, const std::deque<NewElement>& added) const;
  Splice SpliceForText(NodeIndex element, const std::string& text) const;
  Splice SpliceForRemoval(NodeIndex element) const;
  std::string OpenedTag(NodeIndex element, std::size_t& from) const;

  /// The space before a node when nothing else stands before it on its line.
  bool IndentationOf(NodeIndex node, std::string_view& indentation) const;
  std::string LineEnd() const;
  std::string IndentationStep() const;
  void Write(const NewElement& element, const std::string* line_start, const std::string& step,
             std::string& out) const;

  const Document& document_;
  std::map<NodeIndex, std::deque<NewElement>> added_;
  std::map<NodeIndex, std::u16string> texts_;
  std::vector<NodeIndex> removed_;
};

}  // namespace sab::xml
