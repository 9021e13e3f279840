#include "preview/html.h"

#include <array>

namespace sab::preview {
namespace {

// What a byte becomes; empty for one that stays.
constexpr std::array<std::string_view, 256> kReplacements = [] {
  std::array<std::string_view, 256> replacements{};
  for (std::size_t control = 0; control < 0x20; ++control) replacements[control] = "\xEF\xBF\xBD";
  replacements['\t'] = replacements['\n'] = {};
  replacements['\r'] = " ";
  replacements[0x7F] = "\xEF\xBF\xBD";
  replacements['&'] = "&amp;";
  replacements['<'] = "&lt;";
  replacements['>'] = "&gt;";
  replacements['"'] = "&quot;";
  replacements['\''] = "&#39;";
  return replacements;
}();

}  // namespace

void AppendEscaped(std::string& out, std::string_view text) {
  std::size_t from = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view replacement = kReplacements[static_cast<unsigned char>(text[at])];
    if (replacement.empty()) continue;
    out.append(text, from, at - from);
    out.append(replacement);
    from = at + 1;
  }
  out.append(text, from);
}

}  // namespace sab::preview
