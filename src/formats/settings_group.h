#pragma once

#include "formats/rule.h"

namespace sab::formats {

/// A group of settings: values under a node path that the host chooses, so it has no document
/// element of its own.
struct SettingsGroup {
  std::string_view class_name;  ///< of the parser
  std::string_view about;       ///< what the group is about
  std::span<const Rule> keys;   ///< in the order in which a save writes them
};

/// What the groups hold whose keys are those of their files: every element without elements of its
/// own, the first of each name.
inline constexpr auto kNamedValues = FirstCounts({
    Text(kAnyName, "Value under the name of its element"),
});

}  // namespace sab::formats
