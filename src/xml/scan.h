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

/// First byte that is not plain text in one line: <, &, ], a control character, or the start of a
/// longer sequence.
inline const char* SkipPlainText(const char* p) {
  namespace simd = std::experimental;
  constexpr std::size_t kStep = 16;
  // As signed numbers, the bytes of longer sequences are negative.
  using Bytes = simd::simd<signed char, simd::simd_abi::deduce_t<signed char, kStep>>;
  for (;; p += kStep) {
    const Bytes c(reinterpret_cast<const signed char*>(p), simd::element_aligned);
    const auto stops = c < ' ' || c == '<' || c == '&' || c == ']';
    if (simd::any_of(stops)) return p + simd::find_first_set(stops);
  }
}

/// First byte that is not white space.
inline const char* SkipWhiteSpace(const char* p) {
  constexpr std::uint64_t kEightSpaces = 0x2020202020202020;
  for (;;) {
    if (!Has(*p, kSpace)) return p;
    ++p;
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    while (word == kEightSpaces) {
      p += 8;
      std::memcpy(&word, p, 8);
    }
  }
}

/// First byte that ends the ASCII part of a name: also a colon or the start of a longer sequence.
inline const char* SkipPlainName(const char* p) {
  for (;; p += 8) {
    for (int i = 0; i < 8; ++i) {
      if (!Has(p[i], kPlainName)) return p + i;
    }
  }
}

/// Whether two runs of bytes are the same. Up to seven bytes after either are looked at.
inline bool IsSame(const char* a, const char* b, std::size_t size) {
  for (;; a += 8, b += 8, size -= 8) {
    std::uint64_t x;
    std::uint64_t y;
    std::memcpy(&x, a, 8);
    std::memcpy(&y, b, 8);
    if (size <= 8) return size == 0 || (x ^ y) << (64 - 8 * size) == 0;
    if (x != y) return false;
  }
}

}  // namespace sab::xml
