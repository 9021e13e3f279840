#include "document_backend.h"

#include "base/com_error.h"
#include "platform/file.h"
#include "xml/error.h"
#include "xml/path.h"

namespace sab::backend {

// --- Element ---

TextView Element::ReadLocalName(Text& scratch) const {
  return scratch = FromUtf8(document_->Content()->LocalNameOf(node_));
}

bool Element::ReadAttribute(std::string_view name, Text& value) const {
  std::optional<Text> found = document_->Content()->AttributeOf(node_, name);
  if (!found) return false;
  value = std::move(*found);
  return true;
}

TextPosition Element::Position() const {
  const xml::Place place = document_->Content()->PlaceOfNode(node_);
  return {place.line, place.column};
}

Element Element::Append(std::string_view name, TextView text) {
  return Element(added_ ? &added_->Append(name, text)
                        : &document_->Edits().Append(node_, name, text));
}

void Element::SetText(TextView text) { document_->Edits().SetText(node_, text); }

void Element::Remove() { document_->Edits().Remove(node_); }

// --- Nodes ---

Nodes::Nodes(const Document* document, TextView node_path)
    : document_(document), path_(ToUtf8(node_path)) {
  // A path of another kind takes its key as a further step, as the joined path does.
  if (path_.empty()) {
    parents_.emplace(1, xml::kNoNode);
  } else if (xml::IsChildSteps(path_)) {
    parents_.emplace();
    if (document->Content()) parents_ = xml::SelectAll(*document->Content(), path_);
  }
}

Element Nodes::First(std::string_view key) const {
  if (!parents_ || !xml::IsChildSteps(key) || key.find('/') != key.npos) {
    return document_->Select(path_ + "/" + std::string(key));
  }
  if (!document_->Content()) return {};
  return {document_, xml::FirstChildNamed(*document_->Content(), *parents_, key)};
}

// --- Document ---

bool Document::Load(TextView file) {
  file_ = ToUtf8(file);
  failure_ = {};
  edits_.reset();
  content_.reset();
  failure_.file = file_;
  std::optional<std::string> bytes = ReadFileBytes(file, failure_.reason);
  if (!bytes) {
    failure_.is_missing = !FileExists(file);
    return false;
  }
  try {
    content_ = std::make_unique<xml::Document>(std::move(*bytes));
    edits_ = std::make_unique<xml::Editor>(*content_);
    return true;
  } catch (const xml::Error& error) {
    failure_.position = {error.Line(), error.Column()};
    failure_.reason = error.what();
    return false;
  }
}

void Document::Create(std::string_view root_name) {
  edits_.reset();
  content_ = std::make_unique<xml::Document>("<?xml version='1.0' encoding='UTF-8'?>\n<" +
                                             std::string(root_name) + "/>\n");
  edits_ = std::make_unique<xml::Editor>(*content_);
  failure_ = {};
}

Element Document::Root() const { return content_ ? Element(this, content_->Root()) : Element(); }

template <class Call>
auto Document::Checked(const Call& call) const {
  try {
    return call();
  } catch (const xml::Error& error) {
    throw ComError(E_FAIL, file_ + ": " + error.what());
  }
}

Element Document::Select(std::string_view path) const {
  return Checked([&]() -> Element {
    if (content_) return {this, xml::SelectFirst(*content_, path)};
    // An empty document selects nothing, but a path that is none is still refused.
    if (path.empty() || !xml::IsChildSteps(path)) {
      xml::SelectFirst(xml::Document("<empty/>"), path);
    }
    return {};
  });
}

Element Document::Select(TextView path) const { return Select(std::string_view(ToUtf8(path))); }

void Document::Save(TextView file) {
  if (!content_) {
    if (failure_.is_missing) return;
    throw ComError(kDocumentNotLoaded, failure_.Describe() + " The file was left as it is.");
  }
  const std::string bytes = Checked([this] { return edits_->Serialise(); });
  ReplaceFileBytes(file, bytes);
}

}  // namespace sab::backend
