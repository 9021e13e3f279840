#pragma once

#include <sabxml/com.h>

#include <string>

namespace sab {

// Zero-based positions as the interfaces give them.

template <class List>
INT CountOf(const List& list) {
  return static_cast<INT>(list.size());
}

template <class List>
bool IsIndexOf(const List& list, INT index) {
  return index >= 0 && static_cast<std::size_t>(index) < list.size();
}

template <class List>
std::string OutsideMessage(const List& list, INT index) {
  return "There is no entry " + std::to_string(index) + ": the list has " +
         std::to_string(list.size()) + " entries, counted from 0.";
}

}  // namespace sab
