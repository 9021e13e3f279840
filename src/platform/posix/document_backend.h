#pragma once

// The DOM of POSIX builds: our own strict reader. common/config_document.h documents the meaning of
// what stands here; platform/msxml holds the same classes over MSXML.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/load_failure.h"
#include "xml/document.h"
#include "xml/edit.h"

namespace sab::backend {

class Document;

class Element {
 public:
  Element() = default;
  Element(const Document* document, xml::NodeIndex node) : document_(document), node_(node) {}

  explicit operator bool() const { return node_ != xml::kNoNode || added_; }

  inline bool HasLocalName(std::string_view name) const;
  inline bool HasNodeName(std::string_view name) const;
  TextView ReadLocalName(Text& scratch) const;
  inline TextView ReadText(Text& scratch) const;
  bool ReadAttribute(std::string_view name, Text& value) const;
  TextPosition Position() const;

  inline Element FirstChild() const;
  inline void MoveToNextSibling();

  template <class Visit>
  void ForEachChildText(Text& scratch, const Visit& visit) const;

  Element Append(std::string_view name, TextView text);
  void SetText(TextView text);
  void Remove();

 private:
  explicit Element(xml::NewElement* added) : added_(added) {}

  const Document* document_ = nullptr;
  xml::NodeIndex node_ = xml::kNoNode;
  xml::NewElement* added_ = nullptr;
};

class Nodes {
 public:
  Nodes(const Document* document, TextView node_path);

  Element First(std::string_view key) const;

 private:
  const Document* document_;
  std::string path_;  // where keys cannot be looked up below prepared nodes
  std::optional<std::vector<xml::NodeIndex>> parents_;
};

class Document {
 public:
  Document() = default;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  bool Load(TextView file);
  const LoadFailure& Failure() const { return failure_; }
  void Create(std::string_view root_name);
  Element Root() const;
  Element Select(TextView path) const;
  Element Select(std::string_view ascii_path) const;
  Nodes SelectAll(TextView node_path) const { return Nodes(this, node_path); }
  void Save(TextView file);

  /// Null while the document is empty.
  const xml::Document* Content() const { return content_.get(); }
  xml::Editor& Edits() const { return *edits_; }
  /// Runs a call of the XML layer; its errors become ComError with the file's name.
  template <class Call>
  auto Checked(const Call& call) const;

 private:
  std::string file_;
  LoadFailure failure_;
  std::unique_ptr<xml::Document> content_;
  std::unique_ptr<xml::Editor> edits_;
};

inline bool Element::HasLocalName(std::string_view name) const {
  return document_->Content()->HasLocalName(node_, name);
}

inline bool Element::HasNodeName(std::string_view name) const {
  return document_->Content()->NameOf(node_) == name;
}

inline TextView Element::ReadText(Text& scratch) const {
  scratch.clear();
  document_->Content()->AppendText(node_, scratch);
  return scratch;
}

inline Element Element::FirstChild() const {
  return {document_, document_->Content()->FirstChildElement(node_)};
}

inline void Element::MoveToNextSibling() { node_ = document_->Content()->NextElement(node_); }

template <class Visit>
void Element::ForEachChildText(Text& scratch, const Visit& visit) const {
  const xml::Document& content = *document_->Content();
  if (content.HasOnlyText(node_)) {
    visit(ReadText(scratch));
    return;
  }
  for (xml::NodeIndex child = content.FirstChild(node_); child != xml::kNoNode;
       child = content.NextSibling(child)) {
    scratch.clear();
    content.AppendText(child, scratch);
    visit(TextView(scratch));
  }
}

}  // namespace sab::backend
