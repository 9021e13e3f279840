#include "platform/com/utf.h"

#include <cwctype>

#include "base/text.h"

namespace sabcom {

std::string ToUtf8(std::u16string_view text) { return sab::ToUtf8(text); }

std::u16string FromUtf8(std::string_view utf8) { return sab::FromUtf8(utf8); }

std::u16string Folded(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) {
    if (unit >= u'a' && unit <= u'z') {
      unit = static_cast<char16_t>(unit - 32);
    } else if (unit >= 0x80) {
      const std::wint_t upper = std::towupper(unit);
      if (upper <= 0xFFFF) unit = static_cast<char16_t>(upper);
    }
  }
  return folded;
}

}  // namespace sabcom
