#include "platform/text_comparison.h"

namespace sab {

bool EqualsIgnoringCase(TextView a, TextView b) {
  // CompareStringW refuses a null address even for no characters.
  if (a.empty() || b.empty()) return a.empty() && b.empty();
  return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.data(), static_cast<int>(a.size()),
                        b.data(), static_cast<int>(b.size())) == CSTR_EQUAL;
}

}  // namespace sab
