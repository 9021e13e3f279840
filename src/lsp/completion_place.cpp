#include "lsp/completion_place.h"

#include <algorithm>

#include "lsp/syntax.h"
#include "xml/characters.h"

namespace sab::lsp {
namespace {

bool IsInside(std::string_view before, std::string_view start, std::string_view end) {
  const std::size_t opened = before.rfind(start);
  return opened != before.npos && before.find(end, opened) == before.npos;
}

std::size_t EndOfWord(std::string_view text, std::size_t at) {
  while (at < text.size() && xml::Has(text[at], xml::kNameByte)) ++at;
  return at;
}

}  // namespace

CompletionPlace PlaceAt(const View& view, std::size_t cursor) {
  const std::string_view text = view.file->OriginalText();
  const std::string_view before = text.substr(0, cursor);
  CompletionPlace place;
  const auto around = [&](std::size_t at) {
    return view.file->HasElements() ? ElementAt(*view.file, view.file->FromOriginal(at))
                                    : xml::kNoNode;
  };
  if (IsInside(before, "<!--", "-->") || IsInside(before, "<![CDATA[", "]]>")) return place;
  const std::size_t last = before.find_last_of("<>");
  if (last != before.npos && before[last] == '<') {
    place.tag = last;
    const bool is_end = cursor > last + 1 && text[last + 1] == '/';
    const std::size_t name = last + (is_end ? 2 : 1);
    if (cursor < name || EndOfWord(text, name) < cursor) return place;  // attributes
    place.what = is_end ? CompletionPlace::What::kEndTag : CompletionPlace::What::kElement;
    place.around = around(last);
    place.typed = {name, EndOfWord(text, name)};
    place.has_end = place.typed.to < text.size() && text[place.typed.to] == '>';
    // A name before the text that follows on its line is not written on.
    return place;
  }
  place.what = CompletionPlace::What::kContent;
  place.around = around(cursor);
  if (place.around == xml::kNoNode && last == before.npos) return place;
  std::size_t from = last == before.npos ? 0 : last + 1;
  std::size_t to = std::min(text.find('<', cursor), text.size());
  while (from < cursor && xml::Has(text[from], xml::kSpace)) ++from;
  // A value that has no end tag yet is no longer than its line.
  to = std::min(to, std::min(text.find_first_of("\r\n", cursor), text.size()));
  while (to > cursor && xml::Has(text[to - 1], xml::kSpace)) --to;
  place.typed = {from, to};
  return place;
}

}  // namespace sab::lsp
