#pragma once

#include "base/text.h"

namespace sab {

/// The string resources of a library that the host's resource library, VeNls, knows by name. Only
/// Windows has such resources.
class ResourceStrings {
 public:
  explicit ResourceStrings(TextView library_name);

  /// The text of a string resource; empty if the host has not loaded VeNls, if that does not know
  /// the library, or if the library has no such string.
  Text At(unsigned id) const;

 private:
  [[maybe_unused]] void* library_ = nullptr;  // of Windows
};

/// Number of the first default section name in the library's own string table.
inline constexpr unsigned kFirstDefaultMarker = 201;

/// A text of the library's own string table, string_table.def; empty for a number that it does not
/// have.
Text OwnString(unsigned id);

}  // namespace sab
