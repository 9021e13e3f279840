#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "common/config_element.h"
#include "common/load_failure.h"
#include "platform/file_lock.h"

namespace sab {

// A configuration file as the parsers see it: thin values over xml/, with the result codes and
// messages that a host gets. Nothing here is virtual, and nothing allocates for an element.
//
// A document is read-only in memory. Elements that a caller appends, changes or removes are kept
// as pending edits; they are seen by Save and by nothing else, so what a document selects never
// depends on what was appended before.

class ConfigDocument;

/// All elements that one node path selects, prepared for reading many keys under it. Lives no
/// longer than its document.
class ConfigNodes {
 public:
  ConfigNodes(ConfigDocument& document, TextView node_path);

  /// For each key the element that selecting "<node path>/<key>" gives, or none: the first in
  /// document order that any node of the path has, not merely the first node's. Fastest for a file
  /// that has the keys in this order.
  /// @param keys no two the same, without a leading slash; one may be a path of its own,
  ///             "FontStyle/Name"
  std::vector<ConfigElement> First(std::span<const std::string_view> keys) const;

  /// The elements that selecting "<node path>/*" gives: all that any node of the path has.
  std::vector<ConfigElement> Children() const;

 private:
  ConfigDocument* document_;
  std::string path_;  // UTF-8
  // The nodes themselves; kNoNode is the document. Where joining a key changes the meaning of the
  // whole ("a | b"), that is evaluated anew with each key.
  std::optional<std::vector<xml::NodeIndex>> parents_;
};

/// One configuration file in memory. Paths are UTF-8 or automation text.
class ConfigDocument {
 public:
  ConfigDocument() = default;
  ConfigDocument(const ConfigDocument&) = delete;
  ConfigDocument& operator=(const ConfigDocument&) = delete;

  /// Reads a file; a document is loaded again at will.
  /// @return false if the file is missing, unreadable or not well-formed: then the document is
  ///         empty, every well-formed path selects nothing, and Failure() has the reason. Raises
  ///         ComError only where the system cannot load what decodes the file.
  bool Load(TextView file);

  /// The same for a file that Save is going to change: no other writer may change it before Save is
  /// done or the document is gone. Raises ComError where the file may not be written or another
  /// writer keeps it for ten seconds.
  bool LoadToChange(TextView file);

  /// Why the last Load gave false, with file, line and column.
  const LoadFailure& Failure() const { return failure_; }

  /// Starts a new document in place of a loaded one: a declaration for UTF-8 and an empty document
  /// element. Nothing is written before Save.
  void Create(std::string_view root_name);

  /// The document element; no element in an empty document.
  ConfigElement Root() { return open_ ? At(open_->xml.Root()) : ConfigElement(); }

  /// The first element in document order that an XPath 1.0 location path selects, seen from the
  /// document; no element if it selects none. A name without a prefix means an element in no
  /// namespace. Raises ComError(E_FAIL) for a path that is empty or not well-formed, or an
  /// expression that gives no nodes.
  ConfigElement Select(std::string_view path);
  ConfigElement Select(TextView path) { return Select(std::string_view(ToUtf8(path))); }

  /// The same for an element that is to be changed. Raises ComError(E_INVALIDARG) for a path that
  /// leads to something other than an element: the document, an attribute, a text.
  ConfigElement SelectToChange(TextView path);

  /// All elements that a location path selects, in document order; otherwise as Select.
  std::vector<ConfigElement> SelectElements(std::string_view path);
  std::vector<ConfigElement> SelectElements(TextView path) {
    return SelectElements(std::string_view(ToUtf8(path)));
  }

  /// Prepares reading many keys under one node path; null or empty text means the document, so
  /// that a key is then the name of the document element.
  ConfigNodes SelectAll(TextView node_path) { return ConfigNodes(*this, node_path); }

  /// Writes the file with the pending edits in place, as one step that fails or succeeds as a
  /// whole. All bytes outside the edits are kept: comments, quotes, line ends, byte-order mark and
  /// encoding. What was loaded from a file that does not exist writes nothing, and what could not
  /// be read for another reason is never overwritten.
  /// @param file where to write; normally the file that was loaded
  /// Raises ComError: kDocumentNotLoaded if the file exists and could not be read, E_INVALIDARG for
  /// a text that XML cannot hold, otherwise the code of the system for what went wrong; the old
  /// file is whole in any case.
  void Save(TextView file);

 private:
  friend class ConfigNodes;

  // @param lock of the file, or null
  bool Read(TextView file, const FileLock* lock);
  void Clear();
  ConfigElement At(xml::NodeIndex node) { return ConfigElement(ElementPlace{&*open_, node}); }
  // Runs what selects; a failure names the file and the path.
  template <class Selector>
  auto Selecting(std::string_view path, const Selector& select);
  // For a document that was not loaded: what keeps its file from being made is raised.
  void RefuseToOverwrite(TextView file) const;

  std::optional<FileLock> lock_;
  std::optional<OpenDocument> open_;
  Text file_;
  bool is_new_ = false;
  LoadFailure failure_;
};

}  // namespace sab
