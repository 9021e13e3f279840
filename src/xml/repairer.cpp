#include "xml/repairer.h"

#include <algorithm>

#include "xml/characters.h"

namespace sab::xml {
namespace {

constexpr std::size_t kLongestName = 10000;  // less than a reader takes
constexpr std::size_t kMostAttributes = 64;

bool IsSpace(char c) { return Has(c, kSpace); }

}  // namespace

void Repairer::Repair() {
  RepairCharacters();
  last_instruction_end_ = text_.rfind("?>");
  std::size_t at = 0;
  if (Has(0, "<?xml") && text_.size() > 5 && IsSpace(text_[5])) {
    const std::size_t end = text_.find("?>");
    const bool is_whole = end < std::min(text_.find('<', 1), text_.size());
    at = is_whole ? end + 2 : std::min(text_.find_first_of("\n<", 1), text_.size());
    Blank(0, at);
  }
  while (at < text_.size()) {
    if (text_[at] != '<') {
      at = RepairText(at);
    } else if (Has(at, "<!--")) {
      at = RepairComment(at);
    } else if (Has(at, "<![CDATA[") && !open_.empty()) {
      at = RepairCData(at);
    } else if (Has(at, "<!")) {
      const std::size_t end = text_.find_first_of("<>", at + 1);
      const std::size_t next = end == kNone ? text_.size() : text_[end] == '>' ? end + 1 : end;
      Blank(at, next);
      at = next;
    } else if (Has(at, "<?")) {
      at = RepairInstruction(at);
    } else if (Has(at, "</")) {
      at = RepairEndTag(at);
    } else {
      at = RepairStartTag(at);
    }
  }
  // A text that ends too early keeps what it has.
  while (!open_.empty()) {
    open_.back().text_end = open_.back().outdented = kNone;
    CloseImplicitly(text_.size());
  }
  if (!has_root_) Insert(text_.size(), "<_/>");
  std::ranges::stable_sort(insertions_, {}, &Insertion::at);
}

// What is no character of a document anywhere.
void Repairer::RepairCharacters() {
  for (std::size_t at = 0; at < text_.size();) {
    const char c = text_[at];
    if (static_cast<unsigned char>(c) < 0x80) {
      if (static_cast<unsigned char>(c) < 0x20 && !IsSpace(c)) text_[at] = ' ';
      ++at;
      continue;
    }
    const Decoded decoded = Decode(text_.c_str() + at);
    if (decoded.length == 0 || !IsCharacter(decoded.code)) {
      text_[at++] = '?';
    } else {
      at += decoded.length;
    }
  }
}

std::size_t Repairer::RepairText(std::size_t from) {
  const std::size_t to = std::min(text_.find('<', from), text_.size());
  if (open_.empty()) {
    Blank(from, to);
    return to;
  }
  const std::string_view text(text_.data(), to);
  for (std::size_t at = from; (at = text.find("]]>", at)) != kNone; at += 3) text_[at] = ' ';
  RepairReferences(from, to);
  if (Open& open = open_.back(); open.content == from) {
    std::size_t end = std::min(text_.find('\n', from), to);
    while (end > from && IsSpace(text_[end - 1])) --end;
    if (end > from) open.text_end = end;
  }
  return to;
}

std::size_t Repairer::RepairComment(std::size_t from) {
  const std::size_t end = text_.find("-->", from + 4);
  for (std::size_t at = from + 4; at < std::min(end, text_.size()); ++at) {
    if (text_[at] == '-' && (at + 1 == text_.size() || text_[at + 1] == '-')) text_[at] = ' ';
  }
  if (end != kNone) return end + 3;
  Insert(text_.size(), "-->");
  return text_.size();
}

std::size_t Repairer::RepairCData(std::size_t from) {
  const std::size_t end = text_.find("]]>", from);
  if (end != kNone) return end + 3;
  Insert(text_.size(), "]]>");
  return text_.size();
}

std::size_t Repairer::RepairInstruction(std::size_t from) {
  const bool has_end = last_instruction_end_ != kNone && last_instruction_end_ > from;
  const std::size_t end = has_end ? text_.find("?>", from + 2) : kNone;
  const std::size_t name_end = EndOfName(from + 2);
  const std::string_view name(text_.data() + from + 2, name_end - from - 2);
  const bool is_reserved = name.size() == 3 && (name[0] | 0x20) == 'x' && (name[1] | 0x20) == 'm' &&
                           (name[2] | 0x20) == 'l';
  if (end != kNone && !name.empty() && name.find(':') == name.npos && !is_reserved &&
      (name_end == end || IsSpace(text_[name_end]))) {
    return end + 2;
  }
  const std::size_t next = end != kNone && IsOnOneLine(from, end)
                               ? end + 2
                               : std::min(text_.find('\n', from), text_.size());
  Blank(from, next);
  return next;
}

// --- start tags ---

std::size_t Repairer::RepairStartTag(std::size_t from) {
  Open open;
  open.name = from + 1;
  std::size_t at = EndOfName(open.name);
  open.name_size = at - open.name;
  if (open.name_size == 0 || open.name_size > kLongestName) {
    text_[from] = ' ';
    return from + 1;
  }
  open.prefixes = prefixes_.size();
  open.indentation = IndentationOf(from);
  std::vector<Attribute> attributes;
  bool is_empty = false;
  for (;;) {
    at = SkipSpace(at);
    if (at == text_.size()) {
      Blank(from, at);
      prefixes_.resize(open.prefixes);
      return at;
    }
    const char c = text_[at];
    if (c == '>' || c == '<') break;
    if (Has(at, "/>")) {
      is_empty = true;
      break;
    }
    at = RepairAttribute(at, attributes);
  }
  const bool is_unfinished = text_[at] == '<';
  if (open_.empty() && has_root_) {  // a second document element
    const std::size_t end = is_unfinished ? at : at + (is_empty ? 2U : 1U);
    Blank(from, end);
    prefixes_.resize(open.prefixes);
    return end;
  }
  RepairPrefix(open.name, open.name_size);
  RemoveUndeclared(attributes);
  if (!open_.empty() && open_.back().outdented == kNone && open.indentation != kNone &&
      open_.back().indentation != kNone && open.indentation <= open_.back().indentation) {
    open_.back().outdented = from;
  }
  has_root_ = true;
  if (is_empty) {
    prefixes_.resize(open.prefixes);
    return at + 2;
  }
  open.content = is_unfinished ? at : at + 1;
  if (is_unfinished) FinishUnfinishedTag(open);
  open_.push_back(open);
  return open.content;
}

// The tag may be one that is being written before others. It counts if an end tag closes it.
void Repairer::FinishUnfinishedTag(Open& open) {
  const std::size_t end = open.name + open.name_size;
  Blank(end, open.content);
  prefixes_.resize(open.prefixes);
  RepairPrefix(open.name, open.name_size);
  open.is_unfinished = !open_.empty();
  if (!open.is_unfinished) Insert(end, ">");
}

// One attribute, or what should be one; the place after it.
std::size_t Repairer::RepairAttribute(std::size_t from, std::vector<Attribute>& attributes) {
  const std::size_t name_end = EndOfName(from);
  if (name_end == from) {
    // A character of several bytes that begins no name goes byte by byte.
    text_[from] = ' ';
    return from + 1;
  }
  const std::size_t equals = SkipSpace(name_end);
  if (equals >= text_.size() || text_[equals] != '=') return CutAttribute(from);
  const std::size_t quote = SkipSpace(equals + 1);
  if (quote >= text_.size() || (text_[quote] != '"' && text_[quote] != '\'')) {
    return CutAttribute(from);
  }
  const std::size_t stop =
      std::min(text_.find_first_of(text_[quote] == '"' ? "\"<" : "'<", quote + 1), text_.size());
  if (stop == text_.size() || text_[stop] == '<') return CutAttribute(from);
  RepairReferences(quote + 1, stop);
  const Attribute attribute{from, name_end - from, stop + 1};
  if (MayStay(attribute, attributes) &&
      DeclarePrefix(NameOf(attribute), {text_.data() + quote + 1, stop - quote - 1})) {
    attributes.push_back(attribute);
  } else {
    Blank(from, stop + 1);
  }
  return stop + 1;
}

bool Repairer::MayStay(const Attribute& attribute, const std::vector<Attribute>& others) const {
  const std::string_view name = NameOf(attribute);
  const std::size_t colon = name.find(':');
  const std::string_view local = colon == name.npos ? name : name.substr(colon + 1);
  const bool is_name =
      colon == name.npos ||
      (colon > 0 && local.find(':') == local.npos && !local.empty() &&
       EndOfName(attribute.from + colon + 1) == attribute.from + name.size() && local[0] != ':');
  const char next = attribute.end < text_.size() ? text_[attribute.end] : ' ';
  const bool is_spaced = IsSpace(next) || next == '>' || next == '/' || next == '<';
  // Two prefixes may be those of one namespace.
  const auto is_same = [&](const Attribute& other) {
    const std::string_view other_name = NameOf(other);
    return other_name.substr(other_name.find(':') + 1) == local &&
           (other_name == name || (colon != name.npos && other_name.find(':') != name.npos));
  };
  return is_name && is_spaced && name.size() <= kLongestName && others.size() < kMostAttributes &&
         std::ranges::none_of(others, is_same);
}

void Repairer::RemoveUndeclared(const std::vector<Attribute>& attributes) {
  for (const Attribute& attribute : attributes) {
    const std::string_view name = NameOf(attribute);
    const std::size_t colon = name.find(':');
    const std::string_view prefix = name.substr(0, colon == name.npos ? 0 : colon);
    const bool is_known = prefix.empty() || prefix == "xml" || prefix == "xmlns" ||
                          std::ranges::find(prefixes_, prefix) != prefixes_.end();
    if (!is_known) Blank(attribute.from, attribute.end);
  }
}

// Half an attribute goes with the rest of its line, but not what ends the tag.
std::size_t Repairer::CutAttribute(std::size_t from) {
  std::size_t end = EndOfName(from);
  const std::size_t after = SkipSpace(end);
  if (after < text_.size() && text_[after] == '=') {
    end = std::min(text_.find_first_of("<>\n", after), text_.size());
    if (end < text_.size() && text_[end] == '>' && text_[end - 1] == '/') --end;
  }
  Blank(from, end);
  return end;
}

// Whether an attribute may stay as far as its namespace is concerned; notes a prefix.
bool Repairer::DeclarePrefix(std::string_view name, std::string_view value) {
  if (name != "xmlns" && !name.starts_with("xmlns:")) return true;
  constexpr std::string_view kReserved = "http://www.w3.org/";
  if (value.starts_with(kReserved) || value.find('&') != value.npos) return false;
  if (name == "xmlns") return true;
  const std::string_view prefix = name.substr(6);
  if (value.empty() || prefix.empty() || prefix.find(':') != prefix.npos ||
      prefix.starts_with("xml") || !has_prefixes_) {
    return false;
  }
  prefixes_.emplace_back(prefix);
  return true;
}

// A prefix that is not declared becomes part of the name.
void Repairer::RepairPrefix(std::size_t name, std::size_t size) {
  const std::string_view whole(text_.data() + name, size);
  const std::size_t colon = whole.find(':');
  if (colon == whole.npos) return;
  const std::string_view prefix = whole.substr(0, colon);
  const bool is_known = prefix == "xml" || std::ranges::find(prefixes_, prefix) != prefixes_.end();
  const bool is_name = colon + 1 < size && EndOfName(name + colon + 1) == name + size &&
                       whole.find(':', colon + 1) == whole.npos;
  if (!is_known || !is_name)
    std::replace(text_.begin() + static_cast<std::ptrdiff_t>(name),
                 text_.begin() + static_cast<std::ptrdiff_t>(name + size), ':', '_');
}

}  // namespace sab::xml
