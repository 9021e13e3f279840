#pragma once

#include <string>
#include <string_view>

#include "binding/element_reader.h"
#include "formats/rule.h"

namespace sab {

/// One file during one Generate or Load call. Whatever fails is raised as ComError with the file
/// and the path in its message.
class DocumentReader {
 public:
  /// Loads the file; raises kDocumentNotLoaded if it is missing, unreadable or not well-formed.
  /// @param document its form; lives longer
  DocumentReader(const formats::Document& document, TextView file);

  /// The document element. Raises ComError, with the result of the document, for another one.
  ConfigElement Root();
  /// The element at a path of names from the document element; empty if there is none.
  ConfigElement Find(std::string_view path);

  [[noreturn]] void Fail(std::uint32_t result, std::string_view path,
                         std::string_view complaint) const;
  /// Fails as the rule of the element says.
  [[noreturn]] void Fail(const formats::Rule& rule, std::string_view path,
                         std::string_view complaint) const;

  const std::string& File() const { return file_; }

 private:
  const formats::Document& form_;
  std::string file_;  // for messages
  ConfigDocument document_;
};

/// An element that is found by its path, with its target.
struct BoundPath {
  std::string_view path;  ///< from the document element
  const formats::Rule* rule = nullptr;
  BoundRule bound;
  bool (*is_empty)(void* owner) = nullptr;  ///< whether the list in it has no entry
};

struct BoundDocument {
  const formats::Document* form;
  std::span<const BoundPath> paths;  ///< in the order in which they are read
};

/// Reads a file into an owner. The first need that is not met ends it; what was read before stays.
void ReadDocument(const BoundDocument& document, TextView file, void* owner);

}  // namespace sab
