#pragma once

#include <cstring>
#include <vector>

#include "base/text.h"

namespace sab {

/// Memory for one automation string after another, without an allocation for each. A string of it
/// has the length in bytes before the text and a NUL after it, as SysStringLen and its callers
/// expect, but is not of the string allocator: it may only be passed as an [in] parameter, which a
/// callee copies, and never freed, kept or returned.
class ReusedString {
 public:
  /// A string with this text; valid until the next call. Raises std::bad_alloc.
  BSTR Set(TextView text) {
    constexpr std::size_t kPrefix = sizeof(UINT) / sizeof(OLECHAR);
    const std::size_t needed = kPrefix + text.size() + 1;
    if (memory_.size() < needed) memory_.resize(needed);
    const UINT bytes = static_cast<UINT>(text.size() * sizeof(OLECHAR));
    std::memcpy(memory_.data(), &bytes, sizeof bytes);
    OLECHAR* const copy = memory_.data() + kPrefix;
    std::memcpy(copy, text.data(), bytes);
    copy[text.size()] = 0;
    return copy;
  }

 private:
  std::vector<OLECHAR> memory_;
};

}  // namespace sab
