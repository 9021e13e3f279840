#pragma once

#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xml/document.h"

namespace sab::xml {

/// An element that is to be written: its name, its text or its children.
class NewElement {
 public:
  NewElement(std::string_view name, std::u16string_view text) : name_(name), text_(text) {}

  /// Adds a child after the last one; it lives as long as this element.
  NewElement& Append(std::string_view name, std::u16string_view text) {
    return children_.emplace_back(name, text);
  }

 private:
  friend class Editor;

  std::string name_;
  std::u16string text_;
  std::list<NewElement> children_;  // which leaves its elements where they are
};

/// Changes to a document, written into a copy of its bytes. Every byte outside of what is changed
/// is kept; new elements are indented like their neighbours, or on one line where these are.
class Editor {
 public:
  explicit Editor(const Document& document) : document_(document) {}

  /// Adds an element after the last child of an element; it lives as long as the editor.
  NewElement& Append(NodeIndex parent, std::string_view name, std::u16string_view text);
  /// Replaces the content that an element has by a text; what is appended to it comes after that.
  void SetText(NodeIndex element, std::u16string_view text);
  /// Gives an element another local name; its prefix stays.
  void Rename(NodeIndex element, std::string_view name);
  /// Removes an element with all that happens to it, and its line where it is alone on it.
  void Remove(NodeIndex element);

  bool IsEmpty() const { return changes_.empty(); }

  /// The bytes of the changed document in its own encoding. Raises Error for a text that XML cannot
  /// hold, for a name that the encoding cannot and for removing the document element;
  /// std::bad_alloc.
  std::string Serialise() const;

 private:
  // What happens to one element.
  struct Change {
    bool is_removed = false;
    std::optional<std::string> name;
    std::optional<std::u16string> text;
    std::list<NewElement> added;
  };
  // Text bytes [from, to) that give way to others.
  struct Splice {
    std::size_t from;
    std::size_t to;
    std::string text;
  };
  // How new elements start their lines; in line with what is there if they start none.
  struct Layout {
    bool has_lines = false;
    std::string line_start;
    std::string step;

    Layout Deeper() const { return {has_lines, line_start + step, step}; }
  };

  void AppendRenaming(NodeIndex element, std::string_view name, std::vector<Splice>& splices) const;
  Splice SpliceFor(NodeIndex element, const Change& change) const;
  Splice SpliceForContent(NodeIndex element, const Change& change) const;
  Splice SpliceForAdded(NodeIndex parent, const std::list<NewElement>& added) const;
  Splice SpliceForRemoval(NodeIndex element) const;

  /// The space before a node if nothing else precedes it on its line.
  std::optional<std::string_view> IndentationOf(NodeIndex node) const;
  std::string LineEnd() const;
  std::string IndentationStep() const;
  /// What the start tags of new elements hold beside the name.
  std::string_view AttributesOfAdded(NodeIndex parent) const;
  void Write(const NewElement& element, const Layout& layout, std::string_view attributes,
             std::string& out) const;

  const Document& document_;
  std::map<NodeIndex, Change> changes_;  // by element, and so in document order
};

}  // namespace sab::xml
