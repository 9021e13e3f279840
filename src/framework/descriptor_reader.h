#pragma once

#include <string>
#include <string_view>

#include "base/bstr.h"
#include "common/config_document.h"

namespace sab {

/// Reads one descriptor file during one Generate call. Paths are relative to the document and name
/// elements; whatever fails is raised as ComError with the file and the path in its message.
class DescriptorReader {
 public:
  /// Loads the file; raises kDocumentNotLoaded when it is missing, unreadable or not well-formed.
  explicit DescriptorReader(const Bstr& configuration_path);

  /// The element at the path; empty when there is none.
  ConfigElement Find(std::string_view path) { return document_.Select(path); }

  /// Stores the element's text, empty or not. Without the element the member stays as it was.
  /// @return whether the element exists
  bool Read(std::string_view path, Bstr& member);

  /// Stores the text of an element that must be there and not be empty; an empty text is stored
  /// before the failure is raised.
  /// @param code what to raise
  void ReadRequired(std::string_view path, Bstr& member, HRESULT code);

  /// The same, but an empty text is not stored.
  void ReadNonEmpty(std::string_view path, Bstr& member, HRESULT code);

  [[noreturn]] void Fail(HRESULT code, std::string_view path, std::string_view complaint) const;

 private:
  std::string file_;  // for messages
  ConfigDocument document_;
  Text scratch_;
};

}  // namespace sab
