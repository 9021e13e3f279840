#pragma once

#include <sabxml/com.h>

#include <string>

#include "base/com_error.h"

namespace sab {

// Zero-based positions as the interfaces give them.

template <class List>
INT CountOf(const List& list) {
  return static_cast<INT>(list.size());
}

/// Raises ComError(E_INVALIDARG) for a position outside the list.
template <class List>
const auto& EntryAt(const List& list, INT index) {
  if (index >= 0 && static_cast<std::size_t>(index) < list.size()) {
    return list[static_cast<std::size_t>(index)];
  }
  throw ComError(E_INVALIDARG, "There is no entry " + std::to_string(index) + ": the list has " +
                                   std::to_string(list.size()) + " entries, counted from 0.");
}

}  // namespace sab
