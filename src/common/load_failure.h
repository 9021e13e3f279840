#pragma once

#include <string>

namespace sab {

/// A place in a text, counted from 1; both 0 where it is not known.
struct TextPosition {
  unsigned line = 0;
  unsigned column = 0;
};

/// Why a document could not be loaded. All texts are UTF-8.
struct LoadFailure {
  std::string file;
  TextPosition position;
  std::string reason;
  /// No file has the name.
  bool is_missing = false;

  /// "settings.xml:3:7: reason" for a person.
  std::string Describe() const {
    std::string text = file;
    if (position.line != 0)
      text += ':' + std::to_string(position.line) + ':' + std::to_string(position.column);
    return text + ": " + reason;
  }
};

}  // namespace sab
