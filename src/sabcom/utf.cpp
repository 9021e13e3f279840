#include "sabcom/utf.h"

#include <locale.h>
#include <wctype.h>

namespace sabcom {
namespace {

// Names are compared alike whatever locale the host chooses meanwhile; without this one, only the
// letters of ASCII are folded.
locale_t UnicodeLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

}  // namespace

std::u16string Folded(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) {
    if (unit >= u'a' && unit <= u'z') {
      unit = static_cast<char16_t>(unit - 32);
    } else if (unit >= 0x80 && UnicodeLocale()) {
      const wint_t upper = towupper_l(unit, UnicodeLocale());
      if (upper <= 0xFFFF) unit = static_cast<char16_t>(upper);
    }
  }
  return folded;
}

}  // namespace sabcom
