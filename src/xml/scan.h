#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <experimental/simd>

#include "xml/characters.h"

namespace sab::xml {

// Searches over text. All of them stop at a NUL, and look at up to fifteen bytes after the
// place where they stop.
//
// What differs from one element to the next, its text, is searched sixteen bytes at a time without
// a branch on its length. What repeats, names and indentation, is better walked by branches: the
// processor foresees them and runs ahead.

namespace scan {
inline constexpr std::size_t kStep = 16;
// As signed numbers, the bytes of longer sequences are negative.
using Bytes =
    std::experimental::simd<signed char, std::experimental::simd_abi::deduce_t<signed char, kStep>>;
inline Bytes Load(const char* p) {
  return {reinterpret_cast<const signed char*>(p), std::experimental::element_aligned};
}
// The number of the first byte for which the mask is set, kStep without one.
inline std::size_t First(const Bytes::mask_type& mask) {
  return any_of(mask) ? static_cast<std::size_t>(find_first_set(mask)) : kStep;
}
}  // namespace scan

/// First byte that is not plain text in one line: <, &, ], a control character, or the start of a
/// longer sequence.
inline const char* SkipPlainText(const char* p) {
  for (;; p += scan::kStep) {
    const scan::Bytes c = scan::Load(p);
    const std::size_t first = scan::First(c < ' ' || c == '<' || c == '&' || c == ']');
    if (first < scan::kStep) return p + first;
  }
}

/// First byte that is not white space.
inline const char* SkipWhiteSpace(const char* p) {
  while (Has(*p, kSpace)) {
    ++p;
    for (;;) {
      const std::size_t spaces = scan::First(scan::Load(p) != ' ');
      p += spaces;
      if (spaces < scan::kStep) break;
    }
  }
  return p;
}

/// First byte that ends the ASCII part of a name: also a colon or the start of a longer sequence.
inline const char* SkipPlainName(const char* p) {
  for (;; p += 8) {
    for (int i = 0; i < 8; ++i) {
      if (!Has(p[i], kPlainName)) return p + i;
    }
  }
}

/// Whether two runs of bytes are the same. Up to fifteen bytes after either are looked at.
inline bool IsSame(const char* a, const char* b, std::size_t size) {
  for (;; a += scan::kStep, b += scan::kStep, size -= scan::kStep) {
    const std::size_t same = scan::First(scan::Load(a) != scan::Load(b));
    if (same < scan::kStep || size <= scan::kStep) return same >= size;
  }
}

}  // namespace sab::xml
