#pragma once

#include <sabxml/com.h>

#include <string>

#include "base/com_error.h"

namespace sab {

// Zero-based positions as the interfaces give them.

template <class List>
INT CountOf(const List& list) noexcept {
  return static_cast<INT>(list.size());
}

/// Raises ComError(E_INVALIDARG) for an index outside a list.
/// @param what is counted: "section"
inline std::size_t CheckedIndex(INT index, std::size_t count, const char* what) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return static_cast<std::size_t>(index);
  throw ComError(E_INVALIDARG, "There is no " + std::string(what) + " " + std::to_string(index) +
                                   ": there are " + std::to_string(count) + ", counted from 0.");
}

/// Raises ComError(E_INVALIDARG) for a position outside the list.
template <class List>
const auto& EntryAt(const List& list, INT index) {
  return list[CheckedIndex(index, list.size(), "entry")];
}

}  // namespace sab
