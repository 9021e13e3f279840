#include <algorithm>

#include "xml/characters.h"
#include "xml/repairer.h"

namespace sab::xml {

std::size_t Repairer::RepairEndTag(std::size_t from) {
  const std::size_t name = from + 2;
  const std::size_t name_end = EndOfName(name);
  const std::size_t size = name_end - name;
  const std::size_t stop = std::min(text_.find_first_of("<>\n", name_end), text_.size());
  const bool is_closed = stop < text_.size() && text_[stop] == '>';
  const std::size_t after = is_closed ? stop + 1 : stop;
  if (!is_closed || size == 0) {
    const std::string typed = text_.substr(name, size);
    Blank(from, after);
    if (after < text_.size()) CloseUnfinishedEndTag(from, typed);
    return after;
  }
  Blank(name_end, stop);
  const std::size_t owner = OwnerOf(name, size);
  if (owner == kNone) {
    Blank(from, after);
    if (open_.size() > 1 && SeemsToClose(from, open_.back())) {
      open_.back().text_end = open_.back().outdented = kNone;
      CloseImplicitly(from);
    }
    return after;
  }
  if (owner == 0) {
    // The last one of its name closes the document element.
    const std::string tag = "</" + NameOf(open_[0]);
    const std::size_t last = text_.rfind(tag);
    if (last != kNone && last > from) {
      Blank(from, after);
      return after;
    }
  }
  while (open_.size() > owner + 1) CloseImplicitly(from);
  Open& open = open_.back();
  text_.replace(name, size, NameOf(open));
  if (open.is_unfinished) Insert(open.name + open.name_size, ">");
  Pop();
  return after;
}

// The innermost element that is open and has the name; colons were replaced in its start tag.
std::size_t Repairer::OwnerOf(std::size_t name, std::size_t size) const {
  constexpr std::size_t kMostLevels = 1000;
  const std::size_t last = open_.size() - std::min(open_.size(), kMostLevels);
  for (std::size_t i = open_.size(); i-- > last;) {
    if (open_[i].name_size != size) continue;
    const std::string_view own(text_.data() + open_[i].name, size);
    const std::string_view other(text_.data() + name, size);
    if (std::ranges::equal(own, other,
                           [](char a, char b) { return a == b || (a == '_' && b == ':'); })) {
      return i;
    }
  }
  return kNone;
}

// An end tag of another name on the line of the start tag, or indented like it.
bool Repairer::SeemsToClose(std::size_t end_tag, const Open& open) const {
  return IsOnOneLine(open.name, end_tag) ||
         (open.indentation != kNone && IndentationOf(end_tag) == open.indentation);
}

// The beginning of an end tag is that of the innermost element.
void Repairer::CloseUnfinishedEndTag(std::size_t from, std::string_view name) {
  if (open_.size() < 2 || !NameOf(open_.back()).starts_with(name)) return;
  open_.back().text_end = open_.back().outdented = kNone;
  CloseImplicitly(from);
}

void Repairer::CloseImplicitly(std::size_t here) {
  const Open& open = open_.back();
  if (open.is_unfinished) {
    Blank(open.name - 1, open.name + open.name_size);
  } else {
    const std::size_t at = open.text_end != kNone    ? open.text_end
                           : open.outdented != kNone ? open.outdented
                                                     : here;
    loses_prefixes_ = loses_prefixes_ || (at < here && prefixes_.size() > open.prefixes);
    Insert(at, "</" + NameOf(open) + ">");
  }
  Pop();
}

void Repairer::Pop() {
  prefixes_.resize(open_.back().prefixes);
  open_.pop_back();
}

void Repairer::Insert(std::size_t at, std::string text) {
  insertions_.push_back({at, std::move(text)});
}

void Repairer::Blank(std::size_t from, std::size_t to) {
  for (; from < to; ++from) {
    if (text_[from] != '\n' && text_[from] != '\r') text_[from] = ' ';
  }
}

void Repairer::RepairReferences(std::size_t from, std::size_t to) {
  const std::string_view text(text_.data(), to);
  for (std::size_t at = from; (at = text.find('&', at)) != kNone; ++at) {
    const std::size_t size = SizeOfReference(at);
    if (size == 0 || at + size > to) text_[at] = ' ';
  }
}

// Of a reference that a reader takes; otherwise 0.
std::size_t Repairer::SizeOfReference(std::size_t at) const {
  for (const std::string_view known : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"}) {
    if (Has(at, known)) return known.size();
  }
  if (!Has(at, "&#")) return 0;
  const bool is_hexadecimal = Has(at, "&#x");
  const std::size_t digits = at + (is_hexadecimal ? 3U : 2U);
  const std::size_t end =
      text_.find_first_not_of(is_hexadecimal ? "0123456789abcdefABCDEF" : "0123456789", digits);
  if (end == kNone || end == digits || end - digits > 7 || text_[end] != ';') return 0;
  const auto code =
      std::stoul(text_.substr(digits, end - digits), nullptr, is_hexadecimal ? 16 : 10);
  return IsCharacter(static_cast<char32_t>(code)) ? end + 1 - at : 0;
}

std::size_t Repairer::EndOfName(std::size_t from) const {
  std::size_t at = from;
  while (at < text_.size()) {
    const Decoded decoded = Decode(text_.c_str() + at);
    const bool fits = at == from ? IsNameStart(decoded.code) : IsNameCharacter(decoded.code);
    const bool is_colon = decoded.code == ':';
    if (decoded.length == 0 || (!fits && !is_colon)) break;
    at += decoded.length;
  }
  return at;
}

std::size_t Repairer::SkipSpace(std::size_t at) const {
  while (at < text_.size() && xml::Has(text_[at], kSpace)) ++at;
  return at;
}

std::size_t Repairer::IndentationOf(std::size_t at) const {
  std::size_t line = at;
  while (line > 0 && (text_[line - 1] == ' ' || text_[line - 1] == '\t')) --line;
  return line == 0 || text_[line - 1] == '\n' || text_[line - 1] == '\r' ? at - line : kNone;
}

bool Repairer::IsOnOneLine(std::size_t from, std::size_t to) const {
  return text_.find('\n', from) >= to;
}

}  // namespace sab::xml
