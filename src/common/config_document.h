#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"
#include "document_backend.h"
#include "node_handle.h"
#include "platform/document_edits.h"
#include "platform/file_lock.h"
#include "platform/load_failure.h"

namespace sab {

// A configuration file as the parsers see it. These are thin values over the XML DOM that the
// build has chosen: MSXML 6 on Windows, our own strict reader elsewhere; both give the same
// answers. Nothing here is virtual and, on our own reader, nothing allocates for an element.
//
// A document is read-only in memory. Elements that a caller appends, changes or removes are kept
// as pending edits; they are seen by Save and by nothing else, so what a document selects never
// depends on what was appended before.
//
// Any call below may raise ComError with the result code of the DOM call that failed; the message
// names the file and the operation. Names of elements are ASCII literals; case matters.

/// An element of a loaded document, or none. Cheap to copy; lives no longer than its document.
class ConfigElement {
 public:
  class Iterator;
  class Range;

  ConfigElement() = default;
  explicit ConfigElement(backend::Element element) : element_(std::move(element)) {}

  /// The element that a handle names; see ConfigNodeHandle. It can only be read, and its document
  /// may be another library's. Raises ComError(E_INVALIDARG) for what is no handle, as far as that
  /// is known.
  /// @param handle not 0
  static ConfigElement OfHandle(ULONG_PTR handle) {
    return ConfigElement(backend::ElementOfHandle(handle));
  }

  explicit operator bool() const { return static_cast<bool>(element_); }

  /// Whether the local name (the name without a namespace prefix) is this one.
  bool Is(std::string_view local_name) const { return element_.HasLocalName(local_name); }

  /// Whether the name as it is written in the file, with its prefix if it has one, is this one.
  bool HasNodeName(std::string_view name) const { return element_.HasNodeName(name); }

  /// The local name, written to the scratch text; valid until that text changes.
  TextView ReadLocalName(Text& scratch) const { return element_.ReadLocalName(scratch); }

  /// The whole text: that of all descendants joined, white space at both ends left out except
  /// where it is in a CDATA section or under xml:space="preserve". Written to the scratch
  /// text, which readers reuse for all values; valid until that text changes.
  TextView ReadText(Text& scratch) const { return element_.ReadText(scratch); }

  /// Calls visit(TextView) with the same text, which is valid during the call; without a copy of it
  /// in the scratch text where the file has it as it is.
  template <class Visit>
  void WithText(Text& scratch, const Visit& visit) const {
    element_.WithText(scratch, visit);
  }

  /// The child elements in document order, for a range-for loop. Other nodes are not visited.
  Range Children() const;

  /// The element that selecting the name from here gives: the first child of that name that is in
  /// no namespace.
  ConfigElement Child(std::string_view name) const {
    return ConfigElement(element_.FirstChildNamed(name));
  }

  /// Calls visit(TextView) with the text of each child node in document order, whatever its kind:
  /// runs of text (white space alone is no node, white space around text is left out), CDATA
  /// sections, comments, processing instructions and elements.
  template <class Visit>
  void ForEachChildText(Text& scratch, const Visit& visit) const {
    element_.ForEachChildText(scratch, visit);
  }

  /// Line and column of the start tag, counted from 1; both 0 where the DOM does not know them.
  TextPosition Position() const { return element_.Position(); }

  /// Adds a new element after the last child.
  /// @param name UTF-8, without a prefix. Raises ComError(E_INVALIDARG) if it is no name.
  AppendedElement Append(std::string_view name, TextView text = {}) {
    return element_.Append(name, text);
  }

  /// Replaces the whole content by a text.
  void SetText(TextView text) { element_.SetText(text); }

  /// Removes the element with all it contains, and its line where nothing else is on it.
  void Remove() { element_.Remove(); }

 private:
  friend class ConfigNodeHandle;

  backend::Element element_;
};

class ConfigElement::Iterator {
 public:
  explicit Iterator(backend::Element element) : element_(std::move(element)) {}

  ConfigElement operator*() const { return ConfigElement(element_); }
  Iterator& operator++() {
    element_.MoveToNextSibling();
    return *this;
  }
  /// The end of a range is wherever there is no further element.
  bool operator==(std::nullptr_t) const { return !element_; }

 private:
  backend::Element element_;
};

class ConfigElement::Range {
 public:
  explicit Range(backend::Element first) : first_(std::move(first)) {}

  Iterator begin() const { return Iterator(first_); }
  std::nullptr_t end() const { return nullptr; }

 private:
  backend::Element first_;
};

inline ConfigElement::Range ConfigElement::Children() const { return Range(element_.FirstChild()); }

/// Names an element to a Load method of an object that may be another library's: sabxml/node.h
/// says what that can do with it. Lives no longer than the document.
class ConfigNodeHandle {
 public:
  explicit ConfigNodeHandle(const ConfigElement& element) : handle_(element.element_) {}

  ULONG_PTR Get() const { return handle_.Get(); }
  /// Whether a number is a handle that was handed out on this thread and still holds.
  static bool IsLive(ULONG_PTR handle) { return backend::NodeHandle::IsLive(handle); }

 private:
  backend::NodeHandle handle_;
};

/// All elements that one node path selects, prepared for reading many keys under it. Lives no
/// longer than its document.
class ConfigNodes {
 public:
  explicit ConfigNodes(backend::Nodes nodes) : nodes_(std::move(nodes)) {}

  /// For each key the element that selecting "<node path>/<key>" gives, or none: the first in
  /// document order that any node of the path has, not merely the first node's. Fastest for a file
  /// that has the keys in this order.
  /// @param keys no two the same, without a leading slash; one may be a path of its own,
  ///             "FontStyle/Name"
  std::vector<ConfigElement> First(std::span<const std::string_view> keys) const {
    std::vector<ConfigElement> elements;
    elements.reserve(keys.size());
    for (backend::Element& element : nodes_.First(keys)) elements.emplace_back(std::move(element));
    return elements;
  }

  /// The elements that selecting "<node path>/*" gives: all that any node of the path has.
  std::vector<ConfigElement> Children() const {
    std::vector<ConfigElement> children;
    for (backend::Element& child : nodes_.Children()) children.emplace_back(std::move(child));
    return children;
  }

 private:
  backend::Nodes nodes_;
};

/// One configuration file in memory.
class ConfigDocument {
 public:
  /// Reads a file; a document is loaded again at will.
  /// @return false if the file is missing, unreadable or not well-formed: then the document is
  ///         empty, every well-formed path selects nothing, and Failure() has the reason. Raises
  ///         ComError only where the DOM itself fails.
  bool Load(TextView file) { return document_.Load(file); }

  /// The same for a file that Save is going to change: no other writer may change it before Save is
  /// done or the document is gone. Raises ComError where the file may not be written or another
  /// writer keeps it for ten seconds.
  bool LoadToChange(TextView file) {
    lock_.reset();
    lock_.emplace(file);
    return document_.Load(file, &*lock_);
  }

  /// Why the last Load gave false, with file, line and column.
  const LoadFailure& Failure() const { return document_.Failure(); }

  /// Starts a new document in place of a loaded one: a declaration for UTF-8 and an empty document
  /// element. Nothing is written before Save.
  void Create(std::string_view root_name) { document_.Create(root_name); }

  /// The document element; no element in an empty document.
  ConfigElement Root() { return ConfigElement(document_.Root()); }

  /// The first element in document order that an XPath 1.0 location path selects, seen from the
  /// document; no element if it selects none. A name without a prefix means an element in no
  /// namespace. Raises ComError(E_FAIL) for a path that is empty or not well-formed, or an
  /// expression that gives no nodes.
  ConfigElement Select(TextView path) { return ConfigElement(document_.Select(path)); }
  ConfigElement Select(std::string_view ascii_path) {
    return ConfigElement(document_.Select(ascii_path));
  }

  /// The same for an element that is to be changed. Raises ComError(E_INVALIDARG) for a path that
  /// leads to something other than an element: the document, an attribute, a text.
  ConfigElement SelectToChange(TextView path);

  /// All elements that a location path selects, in document order; otherwise as Select.
  std::vector<ConfigElement> SelectElements(TextView path) {
    std::vector<ConfigElement> elements;
    for (backend::Element& element : document_.SelectElements(path))
      elements.emplace_back(std::move(element));
    return elements;
  }

  /// Prepares reading many keys under one node path; null or empty text means the document, so
  /// that a key is then the name of the document element.
  ConfigNodes SelectAll(TextView node_path) { return ConfigNodes(document_.SelectAll(node_path)); }

  /// Writes the file with the pending edits in place, as one step that fails or succeeds as a
  /// whole. All bytes outside the edits are kept: comments, quotes, line ends, byte-order mark and
  /// encoding. What was loaded from a file that does not exist writes nothing, and what could not
  /// be read for another reason is never overwritten.
  /// @param file where to write; normally the file that was loaded
  /// Raises ComError: kDocumentNotLoaded if the file exists and could not be read, otherwise the
  /// code of the system for what went wrong; the old file is whole in any case.
  void Save(TextView file) {
    document_.Save(file);
    lock_.reset();
  }

 private:
  std::optional<FileLock> lock_;
  backend::Document document_;
};

}  // namespace sab
