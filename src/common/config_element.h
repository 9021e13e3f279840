#pragma once

#include <string_view>

#include "base/text.h"
#include "common/load_failure.h"
#include "platform/open_document.h"

namespace sab {

// Names of elements are ASCII literals unless said otherwise; case matters.

/// Raises ComError(E_INVALIDARG) for what cannot name an element. A prefix is not allowed.
/// @param name UTF-8
void CheckElementName(std::string_view name);

/// An element that the next Save of its document will add. It can be given children; it is not
/// part of the loaded document and cannot be read. Lives no longer than its document.
class AppendedElement {
 public:
  explicit AppendedElement(xml::NewElement& element) : element_(&element) {}

  /// Adds a child after the last one.
  /// @param name UTF-8, without a prefix. Raises ComError(E_INVALIDARG) if it is no name.
  AppendedElement Append(std::string_view name, TextView text = {});

 private:
  xml::NewElement* element_;
};

/// An element of a loaded document, or none. Cheap to copy; lives no longer than its document.
class ConfigElement {
 public:
  class Iterator;
  class Range;

  ConfigElement() = default;
  explicit ConfigElement(ElementPlace place) : place_(place) {}

  explicit operator bool() const { return place_.node != xml::kNoNode; }
  ElementPlace Place() const { return place_; }

  /// Whether the local name (the name without a namespace prefix) is this one.
  bool Is(std::string_view local_name) const { return Xml().HasLocalName(place_.node, local_name); }

  /// Whether the name as it is written in the file, with its prefix if it has one, is this one.
  bool HasNodeName(std::string_view name) const { return Xml().NameOf(place_.node) == name; }

  /// The local name, written to the scratch text; valid until that text changes.
  TextView ReadLocalName(Text& scratch) const {
    return scratch = FromUtf8(Xml().LocalNameOf(place_.node));
  }

  /// The whole text: that of all descendants joined, white space at both ends left out except
  /// in a CDATA section or under xml:space="preserve". Written to the scratch
  /// text, which readers reuse for all values; valid until that text changes.
  TextView ReadText(Text& scratch) const { return ReadTextOf(place_.node, scratch); }

  /// Calls visit(TextView) with the same text, which is valid during the call; without a copy of it
  /// in the scratch text where the file has it as it is.
  template <class Visit>
  void WithText(Text& scratch, const Visit& visit) const {
    if (!Xml().HasOnlyText(place_.node)) return visit(ReadText(scratch));
    const xml::Utf16Text<OLECHAR> text(Xml().OnlyTextOf(place_.node));
    visit(TextView(text.Data(), text.Size()));
  }

  /// The child elements in document order, for a range-for loop. Other nodes are not visited.
  Range Children() const;

  /// The element that selecting the name from here gives: the first child of that name that is in
  /// no namespace.
  ConfigElement Child(std::string_view name) const {
    return At(xml::FirstChildNamed(Xml(), {place_.node}, name));
  }

  /// Calls visit(TextView) with the text of each child node in document order, whatever its kind:
  /// runs of text (white space alone is no node, white space around text is left out), CDATA
  /// sections, comments, processing instructions and elements.
  template <class Visit>
  void ForEachChildText(Text& scratch, const Visit& visit) const {
    if (Xml().HasOnlyText(place_.node)) return visit(ReadText(scratch));
    for (xml::NodeIndex child = Xml().FirstChild(place_.node); child != xml::kNoNode;
         child = Xml().NextSibling(child))
      visit(ReadTextOf(child, scratch));
  }

  /// Line and column of the start tag, counted from 1.
  TextPosition Position() const;

  /// Adds a new element after the last child.
  /// @param name UTF-8, without a prefix. Raises ComError(E_INVALIDARG) if it is no name.
  AppendedElement Append(std::string_view name, TextView text = {});

  /// Replaces the whole content by a text.
  void SetText(TextView text);

  /// Removes the element with all it contains, and its line where it is alone on it.
  void Remove() { place_.document->editor.Remove(place_.node); }

 private:
  const xml::Document& Xml() const { return place_.document->xml; }
  ConfigElement At(xml::NodeIndex node) const {
    return ConfigElement(ElementPlace{place_.document, node});
  }
  TextView ReadTextOf(xml::NodeIndex node, Text& scratch) const {
    scratch.clear();
    Xml().AppendText(node, scratch);
    return scratch;
  }

  ElementPlace place_;
};

class ConfigElement::Iterator {
 public:
  explicit Iterator(ConfigElement element) : element_(element) {}

  ConfigElement operator*() const { return element_; }
  Iterator& operator++() {
    element_ = element_.At(element_.Xml().NextElement(element_.place_.node));
    return *this;
  }
  /// The end of a range is wherever there is no further element.
  bool operator==(std::nullptr_t) const { return !element_; }

 private:
  ConfigElement element_;
};

class ConfigElement::Range {
 public:
  explicit Range(ConfigElement first) : first_(first) {}

  Iterator begin() const { return Iterator(first_); }
  std::nullptr_t end() const { return nullptr; }

 private:
  ConfigElement first_;
};

inline ConfigElement::Range ConfigElement::Children() const {
  return Range(At(Xml().FirstChildElement(place_.node)));
}

}  // namespace sab
