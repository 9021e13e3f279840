#include "common/config_document.h"

#include <algorithm>
#include <system_error>

#include "base/com_error.h"
#include "platform/file.h"
#include "platform/file_name.h"
#include "xml/error.h"

namespace sab {
namespace {

// Child steps lead to elements only; a path needs one of these to lead to anything else.
bool MayLeadElsewhere(TextView path) {
  const std::size_t last = path.find_last_not_of(OLESTR(" \t\r\n"));
  return path.find_first_of(OLESTR("@(:.")) != TextView::npos ||
         (last != TextView::npos && path[last] == '/');
}

// A path that ends with an attribute never leads to an element, whether the attribute exists or
// not.
bool EndsWithAttribute(TextView path) {
  const std::size_t slash = path.find_last_of(OLESTR('/'));
  const TextView step = path.substr(slash == TextView::npos ? 0 : slash + 1);
  return step.starts_with(OLESTR("@")) && step.find_first_of(OLESTR("]'\"|")) == TextView::npos;
}

}  // namespace

template <class Selector>
auto ConfigDocument::Selecting(std::string_view path, const Selector& select) {
  try {
    if (open_) return select(open_->paths);
    // Whether a path is well-formed does not depend on there being a document.
    const xml::Document none("<none/>");
    xml::Paths paths(none);
    return select(paths);
  } catch (const xml::Error& error) {
    throw ComError(E_FAIL, ToUtf8(file_) + ": selecting \"" + std::string(path) +
                               "\" failed: " + error.what());
  }
}

ConfigNodes::ConfigNodes(ConfigDocument& document, TextView node_path)
    : document_(&document), path_(ToUtf8(node_path)) {
  if (document.open_) {
    parents_ =
        document.Selecting(path_, [this](xml::Paths& paths) { return paths.SelectParents(path_); });
  }
}

std::vector<ConfigElement> ConfigNodes::First(std::span<const std::string_view> keys) const {
  std::vector<ConfigElement> elements(keys.size());
  if (parents_) {
    const std::vector<xml::NodeIndex> found =
        xml::FirstChildrenNamed(document_->open_->xml, *parents_, keys);
    std::transform(found.begin(), found.end(), elements.begin(),
                   [this](xml::NodeIndex node) { return document_->At(node); });
  }
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const bool is_one_step =
        xml::IsChildSteps(keys[i]) && keys[i].find('/') == std::string_view::npos;
    if (!parents_ || !is_one_step)
      elements[i] = document_->Select(path_ + '/' + std::string(keys[i]));
  }
  return elements;
}

std::vector<ConfigElement> ConfigNodes::Children() const {
  if (!parents_) return document_->SelectElements(path_ + "/*");
  std::vector<ConfigElement> children;
  for (const xml::NodeIndex parent : *parents_) {
    for (const ConfigElement child : document_->At(parent).Children()) children.push_back(child);
  }
  return children;
}

void ConfigDocument::Clear() {
  open_.reset();
  file_.clear();
  is_new_ = false;
  failure_ = {};
}

bool ConfigDocument::Load(TextView file) { return Read(file, nullptr); }

bool ConfigDocument::LoadToChange(TextView file) {
  lock_.reset();
  lock_.emplace(file);
  return Read(file, &*lock_);
}

bool ConfigDocument::Read(TextView file, const FileLock* lock) {
  Clear();
  file_ = file;
  std::string reason;
  auto bytes = lock ? lock->ReadBytes(file, reason) : ReadFileBytes(file, reason);
  if (bytes) {
    try {
      open_.emplace(*std::move(bytes));
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

void ConfigDocument::Create(std::string_view root_name) {
  CheckElementName(root_name);
  Clear();
  open_.emplace("<?xml version='1.0' encoding='UTF-8'?>\r\n<" + std::string(root_name) + "/>\r\n");
  is_new_ = true;
}

ConfigElement ConfigDocument::Select(std::string_view path) {
  const xml::NodeIndex found =
      Selecting(path, [path](xml::Paths& paths) { return paths.SelectFirst(path); });
  return open_ ? At(found) : ConfigElement();
}

ConfigElement ConfigDocument::SelectToChange(TextView path) {
  const ConfigElement element = Select(path);
  if (element || !open_ || !MayLeadElsewhere(path)) return element;
  // Whatever node the path leads to has the document among its ancestors, or is it.
  Text any_node(OLESTR("("));
  any_node.append(path).append(OLESTR(")/ancestor-or-self::node()/*"));
  if (EndsWithAttribute(path) || Select(any_node))
    throw ComError(E_INVALIDARG,
                   ToUtf8(file_) + ": the node path \"" + ToUtf8(path) +
                       "\" leads to no element: give the path of the element with the keys");
  return element;
}

std::vector<ConfigElement> ConfigDocument::SelectElements(std::string_view path) {
  const std::vector<xml::NodeIndex> found =
      Selecting(path, [path](xml::Paths& paths) { return paths.SelectAll(path); });
  std::vector<ConfigElement> elements;
  if (!open_) return elements;
  for (const xml::NodeIndex node : found) elements.push_back(At(node));
  return elements;
}

void ConfigDocument::RefuseToOverwrite(TextView file) const {
  if (const char* const reason = ReasonAgainstName(file))
    throw ComError(E_INVALIDARG, "cannot write " + ToUtf8(file) + ": " + reason);
  if (failure_.is_missing || failure_.reason.empty()) return CheckReplaceable(file);
  throw ComError(
      kDocumentNotLoaded,
      ToUtf8(file) + " is left as it is, because it could not be read: " + failure_.Describe());
}

void ConfigDocument::Save(TextView file) {
  if (!open_) {
    RefuseToOverwrite(file);
  } else if (!is_new_ && open_->editor.IsEmpty() && file == file_) {
    CheckReplaceable(file);
  } else {
    std::string bytes;
    try {
      bytes = open_->editor.Serialise();
    } catch (const xml::Error& error) {
      throw ComError(E_INVALIDARG, "cannot write " + ToUtf8(file) + ": " + error.what());
    }
    ReplaceFileBytes(file, bytes);
  }
  lock_.reset();
}

}  // namespace sab
