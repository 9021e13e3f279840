#include "platform/text_comparison.h"

#include <locale.h>
#include <wctype.h>

namespace sab {
namespace {

// The letters of every script, whatever locale the host has chosen.
locale_t UnicodeLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

// Unicode's simple case folding, which is nearly always: the small letter of the capital letter.
char32_t Folded(char32_t code) {
  constexpr char32_t kCapitalIWithDot = 0x130;
  constexpr char32_t kSmallDotlessI = 0x131;
  if (code < 0x80) return ToLowerAscii(code);
  if (code == kCapitalIWithDot || code == kSmallDotlessI)
    return code;  // Turkish has pairs of its own
  const locale_t locale = UnicodeLocale();
  if (!locale) return code;
  return static_cast<char32_t>(towlower_l(towupper_l(static_cast<wint_t>(code), locale), locale));
}

char32_t TakeCode(TextView& text) {
  const char32_t first = text.front();
  text.remove_prefix(1);
  const bool is_pair = first >= 0xD800 && first < 0xDC00 && !text.empty() &&
                       text.front() >= 0xDC00 && text.front() < 0xE000;
  if (!is_pair) return first;
  const char32_t second = text.front();
  text.remove_prefix(1);
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

}  // namespace

bool EqualsIgnoringCase(TextView a, TextView b) {
  while (!a.empty() && !b.empty()) {
    if (Folded(TakeCode(a)) != Folded(TakeCode(b))) return false;
  }
  return a.empty() && b.empty();
}

}  // namespace sab
