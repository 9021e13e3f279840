#pragma once

// The DOM of Windows builds: MSXML 6 with its defaults. common/config_document.h documents the
// meaning of these classes; platform/posix holds the same classes over our own reader.
//
// MSXML only reads. It would not keep the bytes of a file that it writes (quotes, blank lines,
// encoding), so edits are spliced into the bytes as they are on the other platforms; elements are
// matched by their place among the children of their parents.

#include <sabxml/com.h>

#include <msxml2.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "base/text.h"
#include "platform/document_edits.h"
#include "platform/file_lock.h"
#include "platform/load_failure.h"
#include "xml/document.h"
#include "xml/edit.h"

namespace sab::backend {

class Document;

class Element {
 public:
  Element() = default;
  Element(Document* document, ComPtr<IXMLDOMNode> node)
      : document_(document), node_(std::move(node)) {}

  explicit operator bool() const { return static_cast<bool>(node_); }

  bool HasLocalName(std::string_view name) const;
  bool HasNodeName(std::string_view name) const;
  TextView ReadLocalName(Text& scratch) const;
  TextView ReadText(Text& scratch) const;
  template <class Visit>
  void WithText(Text& scratch, const Visit& visit) const {
    visit(ReadText(scratch));
  }
  TextPosition Position() const { return {}; }

  Element FirstChild() const;
  Element FirstChildNamed(std::string_view name) const;
  void MoveToNextSibling();

  template <class Visit>
  void ForEachChildText(Text& scratch, const Visit& visit) const {
    for (ComPtr<IXMLDOMNode> child = FirstNode(); child; child = NextNode(child))
      visit(TextOf(child, scratch));
  }

  AppendedElement Append(std::string_view name, TextView text);
  void SetText(TextView text);
  void Remove();

  const ComPtr<IXMLDOMNode>& Node() const { return node_; }

 private:
  // Raises ComError for a failed call of the DOM.
  void CheckCall(HRESULT result, std::string_view operation) const;
  ComPtr<IXMLDOMNode> FirstNode() const;
  ComPtr<IXMLDOMNode> NextNode(const ComPtr<IXMLDOMNode>& node) const;
  TextView TextOf(const ComPtr<IXMLDOMNode>& node, Text& scratch) const;
  TextView LocalName() const;
  // The same element among the bytes of the file.
  xml::NodeIndex PlaceInBytes() const;

  Document* document_ = nullptr;  // null for a node that a caller passed in
  ComPtr<IXMLDOMNode> node_;
  // Readers compare the name of an element with many others, so it is fetched once.
  mutable Bstr local_name_;
};

class Nodes {
 public:
  Nodes(Document* document, TextView node_path) : document_(document), path_(node_path) {}

  std::vector<Element> First(std::span<const std::string_view> keys) const;
  std::vector<Element> Children() const;

 private:
  Document* document_;
  Text path_;
};

class Document {
 public:
  Document() = default;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  bool Load(TextView file, const FileLock* lock = nullptr);
  void Create(std::string_view root_name);
  const LoadFailure& Failure() const { return failure_; }
  TextView File() const { return file_; }
  Element Root();
  Element Select(TextView path);
  Element Select(std::string_view ascii_path);
  std::vector<Element> SelectElements(TextView path);
  Nodes SelectAll(TextView node_path) { return Nodes(this, node_path); }
  void Save(TextView file);

  /// Raises ComError for a failed call of the DOM.
  void CheckCall(HRESULT result, std::string_view operation) const;
  /// The bytes of the file, read when they are first needed, and the edits in them.
  const xml::Document& Bytes();
  xml::Editor& Editor();

 private:
  // Replaces what was loaded by an empty DOM.
  void Clear(TextView file);

  ComPtr<IXMLDOMDocument> document_;
  bool is_loaded_ = false;
  bool is_new_ = false;
  Text file_;
  LoadFailure failure_;
  std::optional<xml::Document> bytes_;
  std::optional<xml::Editor> editor_;
};

}  // namespace sab::backend
