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
  void* library_ = nullptr;
};

}  // namespace sab
