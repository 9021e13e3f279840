#pragma once

// The DOM of POSIX builds: our own strict reader. common/config_document.h documents the meaning of
// these classes; platform/msxml holds the same classes over MSXML.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/document_edits.h"
#include "platform/file_lock.h"
#include "platform/load_failure.h"
#include "xml/document.h"
#include "xml/edit.h"
#include "xml/path.h"

namespace sab::backend {

class Document;

class Element {
 public:
  Element() = default;
  Element(Document* document, xml::NodeIndex node) : document_(document), node_(node) {}

  explicit operator bool() const { return node_ != xml::kNoNode; }

  bool HasLocalName(std::string_view name) const;
  bool HasNodeName(std::string_view name) const;
  TextView ReadLocalName(Text& scratch) const;
  TextView ReadText(Text& scratch) const;
  template <class Visit>
  void WithText(Text& scratch, const Visit& visit) const;
  TextPosition Position() const;
  Element FirstChild() const;
  Element FirstChildNamed(std::string_view name) const;
  void MoveToNextSibling();
  template <class Visit>
  void ForEachChildText(Text& scratch, const Visit& visit) const;

  AppendedElement Append(std::string_view name, TextView text);
  void SetText(TextView text);
  void Remove();

  Document* OwningDocument() const { return document_; }
  xml::NodeIndex Index() const { return node_; }

 private:
  const xml::Document& Xml() const;

  Document* document_ = nullptr;
  xml::NodeIndex node_ = xml::kNoNode;
};

class Nodes {
 public:
  Nodes(Document* document, TextView node_path);

  std::vector<Element> First(std::span<const std::string_view> keys) const;
  std::vector<Element> Children() const;

 private:
  Document* document_;
  std::string path_;  // UTF-8
  // The nodes themselves; kNoNode is the document. Where joining a key changes the meaning of the
  // whole ("a | b"), that is evaluated anew with each key.
  std::optional<std::vector<xml::NodeIndex>> parents_;
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
  Element Root() { return document_ ? Element(this, document_->Root()) : Element(); }
  Element Select(TextView path) { return Select(std::string_view(ToUtf8(path))); }
  Element Select(std::string_view path);
  std::vector<Element> SelectElements(TextView path) {
    return SelectElements(std::string_view(ToUtf8(path)));
  }
  std::vector<Element> SelectElements(std::string_view path);
  Nodes SelectAll(TextView node_path) { return Nodes(this, node_path); }
  std::optional<std::vector<xml::NodeIndex>> SelectParents(std::string_view path);
  void Save(TextView file);

  bool IsLoaded() const { return document_.has_value(); }
  /// The loaded document; there must be one.
  const xml::Document& Xml() const { return *document_; }
  xml::Editor& Editor();

 private:
  // Runs what selects; a failure names the file and the path.
  template <class Selector>
  auto Selecting(std::string_view path, const Selector& select);
  void Clear();

  std::optional<xml::Document> document_;
  std::optional<xml::Paths> paths_;  // of the document
  std::optional<xml::Editor> editor_;
  Text file_;
  bool is_new_ = false;
  LoadFailure failure_;
};

inline const xml::Document& Element::Xml() const { return document_->Xml(); }

inline bool Element::HasLocalName(std::string_view name) const {
  return Xml().HasLocalName(node_, name);
}

inline bool Element::HasNodeName(std::string_view name) const {
  return Xml().NameOf(node_) == name;
}

inline TextView Element::ReadText(Text& scratch) const {
  scratch.clear();
  Xml().AppendText(node_, scratch);
  return scratch;
}

template <class Visit>
void Element::WithText(Text& scratch, const Visit& visit) const {
  if (Xml().HasOnlyText(node_)) {
    const xml::Utf16Text text(Xml().OnlyTextOf(node_));
    visit(TextView(text.Data(), text.Size()));
  } else {
    visit(ReadText(scratch));
  }
}

inline Element Element::FirstChild() const {
  return Element(document_, Xml().FirstChildElement(node_));
}

inline void Element::MoveToNextSibling() { node_ = Xml().NextElement(node_); }

template <class Visit>
void Element::ForEachChildText(Text& scratch, const Visit& visit) const {
  if (Xml().HasOnlyText(node_)) {
    visit(ReadText(scratch));
    return;
  }
  for (xml::NodeIndex child = Xml().FirstChild(node_); child != xml::kNoNode;
       child = Xml().NextSibling(child))
    visit(Element(document_, child).ReadText(scratch));
}

}  // namespace sab::backend
