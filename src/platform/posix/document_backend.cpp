#include "document_backend.h"

#include <algorithm>
#include <system_error>

#include "base/com_error.h"
#include "platform/file.h"
#include "system_file.h"
#include "xml/error.h"

namespace sab::backend {

// --- Element ---

TextView Element::ReadLocalName(Text& scratch) const {
  return scratch = FromUtf8(Xml().LocalNameOf(node_));
}

TextPosition Element::Position() const {
  const xml::Place place = Xml().PlaceOfNode(node_);
  return {place.line, place.column};
}

Element Element::FirstChildNamed(std::string_view name) const {
  return Element(document_, xml::FirstChildNamed(Xml(), {node_}, name));
}

AppendedElement Element::Append(std::string_view name, TextView text) {
  return AppendTo(document_->Editor(), node_, name, text);
}

void Element::SetText(TextView text) { SetTextOf(document_->Editor(), node_, text); }

void Element::Remove() { document_->Editor().Remove(node_); }

Nodes::Nodes(Document* document, TextView node_path)
    : document_(document), path_(ToUtf8(node_path)) {
  if (document_->IsLoaded()) parents_ = document_->SelectParents(path_);
}

std::vector<Element> Nodes::First(std::span<const std::string_view> keys) const {
  std::vector<Element> elements(keys.size());
  if (parents_) {
    const std::vector<xml::NodeIndex> found =
        xml::FirstChildrenNamed(document_->Xml(), *parents_, keys);
    std::transform(found.begin(), found.end(), elements.begin(),
                   [this](xml::NodeIndex node) { return Element(document_, node); });
  }
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const bool is_one_step =
        xml::IsChildSteps(keys[i]) && keys[i].find('/') == std::string_view::npos;
    if (!parents_ || !is_one_step)
      elements[i] = document_->Select(path_ + '/' + std::string(keys[i]));
  }
  return elements;
}

std::vector<Element> Nodes::Children() const {
  if (!parents_) return document_->SelectElements(path_ + "/*");
  std::vector<Element> children;
  for (const xml::NodeIndex parent : *parents_) {
    for (Element child = Element(document_, parent).FirstChild(); child; child.MoveToNextSibling())
      children.push_back(child);
  }
  return children;
}

void Document::Clear() {
  editor_.reset();
  paths_.reset();
  document_.reset();
  file_.clear();
  is_new_ = false;
  failure_ = {};
}

bool Document::Load(TextView file, const FileLock* lock) {
  Clear();
  file_ = file;
  std::string reason;
  auto bytes = lock && lock->Handle() != FileLock::kNone
                   ? ReadBytes(static_cast<int>(lock->Handle()), reason)
                   : ReadFileBytes(file, reason);
  if (bytes) {
    try {
      document_.emplace(*std::move(bytes));
      paths_.emplace(*document_);
      return true;
    } catch (const xml::Error& error) {
      reason = error.what();
      failure_.position = {error.Line(), error.Column()};
    } catch (const std::system_error& error) {
      throw ComError(ResultOfSystemError(error), ToUtf8(file) + ": " + error.what());
    }
  }
  failure_.file = ToUtf8(file);
  failure_.reason = std::move(reason);
  failure_.is_missing = !FileExists(file);
  return false;
}

void Document::Create(std::string_view root_name) {
  Clear();
  document_.emplace(BytesOfNewDocument(root_name));
  paths_.emplace(*document_);
  is_new_ = true;
}

template <class Selector>
auto Document::Selecting(std::string_view path, const Selector& select) {
  try {
    if (paths_) return select(*paths_);
    // Whether a path is well-formed does not depend on there being a document.
    const xml::Document none("<none/>");
    xml::Paths paths(none);
    return select(paths);
  } catch (const xml::Error& error) {
    throw ComError(E_FAIL, ToUtf8(file_) + ": selecting \"" + std::string(path) +
                               "\" failed: " + error.what());
  }
}

Element Document::Select(std::string_view path) {
  const xml::NodeIndex found =
      Selecting(path, [path](xml::Paths& paths) { return paths.SelectFirst(path); });
  return document_ ? Element(this, found) : Element();
}

std::vector<Element> Document::SelectElements(std::string_view path) {
  const std::vector<xml::NodeIndex> found =
      Selecting(path, [path](xml::Paths& paths) { return paths.SelectAll(path); });
  std::vector<Element> elements;
  if (!document_) return elements;
  for (const xml::NodeIndex node : found) elements.emplace_back(this, node);
  return elements;
}

std::optional<std::vector<xml::NodeIndex>> Document::SelectParents(std::string_view path) {
  return Selecting(path, [path](xml::Paths& paths) { return paths.SelectParents(path); });
}

xml::Editor& Document::Editor() {
  if (!editor_) editor_.emplace(*document_);
  return *editor_;
}

void Document::Save(TextView file) {
  if (!document_) {
    RefuseToOverwrite(file, failure_);
    return;
  }
  const bool is_changed = is_new_ || (editor_ && !editor_->IsEmpty());
  if (is_changed || file != file_) {
    SaveEdits(Editor(), file);
  } else {
    CheckReplaceable(file);
  }
}

}  // namespace sab::backend
