#include "check/text_template.h"

#include <algorithm>
#include <map>

#include "check/markup.h"
#include "formats/documents.h"
#include "text/ascii.h"
#include "text/distance.h"

namespace sab::check {
namespace {

constexpr std::string_view kWideBlank = "\xE3\x80\x80";
constexpr std::string_view kWideOpen = "\xEF\xBC\xBB";
constexpr std::string_view kWideClose = "\xEF\xBC\xBD";
constexpr std::string_view kOtherOpen = "\xE3\x80\x90";
constexpr std::string_view kOtherClose = "\xE3\x80\x91";

std::string_view Trimmed(std::string_view text) {
  for (;;) {
    if (text.starts_with(' ') || text.starts_with('\t')) {
      text.remove_prefix(1);
    } else if (text.starts_with(kWideBlank)) {
      text.remove_prefix(kWideBlank.size());
    } else if (text.ends_with(' ') || text.ends_with('\t')) {
      text.remove_suffix(1);
    } else if (text.ends_with(kWideBlank)) {
      text.remove_suffix(kWideBlank.size());
    } else {
      return text;
    }
  }
}

// The name in a marker; empty for a line that is none.
std::string_view NameInMarker(std::string_view line) {
  if (!line.starts_with('[')) return {};
  const std::size_t end = line.find_first_of("[]", 1);
  if (end == line.npos || line[end] != ']' || !Trimmed(line.substr(end + 1)).empty()) return {};
  return Trimmed(line.substr(1, end - 1));
}

bool IsKnownSection(std::string_view name) {
  return std::ranges::any_of(
      formats::DocumentOfKind(formats::Kind::kTextTemplate).content,
      [name](const formats::Rule& rule) { return EqualsIgnoringAsciiCase(rule.name, name); });
}

// Why a line that looks like a marker is none; empty for other lines.
std::string WhyNoMarker(std::string_view line) {
  if (line.starts_with("[[")) return {};
  const std::string_view text = Trimmed(line);
  if (text.starts_with(kWideOpen) || text.starts_with(kOtherOpen)) {
    const bool is_closed =
        text.ends_with(kWideClose) || text.ends_with(kOtherClose) || text.ends_with(']');
    return is_closed ? "the brackets of a marker are [ and ]" : "";
  }
  if (!text.starts_with('[')) {
    // A name of its own without its first bracket.
    return text.ends_with(']') && IsKnownSection(Trimmed(text.substr(0, text.size() - 1)))
               ? "the marker lacks its first bracket"
               : "";
  }
  if (line.front() != '[') {
    return NameInMarker(text).empty() ? "" : "a marker begins in the first column";
  }
  const std::size_t end = text.find_first_of("[]", 1);
  if (end == text.npos) {
    return text.ends_with(kWideClose) || text.ends_with(kOtherClose)
               ? "the brackets of a marker are [ and ]"
               : "the marker lacks its last bracket";
  }
  if (text[end] == '[') return "a name of a section has no brackets";
  if (Trimmed(text.substr(1, end - 1)).empty()) return "a section must have a name";
  return "nothing may follow the last bracket of a marker";
}

}  // namespace

void CheckTextTemplate(Reporter& reporter, project::FileIndex index) {
  const std::string_view text = reporter.GetProject().At(index).PlainText();
  std::map<std::string, project::Span> sections;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    const std::string_view line = text.substr(at, end - at);
    const project::Span span{at, end};
    const std::size_t bad = line.find(kReplacementCharacter);
    if (bad != line.npos) {
      reporter.Add(
          Mistake::kTemplateBadBytes, index, {at + bad, at + bad + 3},
          {"a character was lost here, or its bytes are none of the encoding of the file: write it "
           "again, and save the file as UTF-8"});
    }
    const std::string_view name = NameInMarker(line);
    if (!name.empty()) {
      std::string folded(name);
      for (char& c : folded) c = ToLowerAscii(c);
      const auto [first, is_new] = sections.try_emplace(folded, span);
      if (!is_new) {
        Words words{"the section " + Quoted(name) + " is there twice: a host finds the first"};
        words.related.push_back({reporter.At(index, first->second), "the first one"});
        reporter.Add(Mistake::kTemplateDuplicateSection, index, span, std::move(words));
      } else if (!IsKnownSection(name)) {
        std::vector<std::string_view> names;
        for (const formats::Rule& rule :
             formats::DocumentOfKind(formats::Kind::kTextTemplate).content) {
          names.push_back(rule.name);
        }
        Words words{"hosts do not look for a section " + Quoted(name) + " by default"};
        words.suggestion = text::FindNearest(name, names).word;
        reporter.Add(Mistake::kTemplateUnknownSection, index, span, std::move(words));
      }
    } else if (const std::string why = WhyNoMarker(line); !why.empty()) {
      reporter.Add(Mistake::kTemplateMarker, index, span,
                   {"the line " + Quoted(line) + " begins no section: " + why});
    }
    at = end + (text.substr(end).starts_with("\r\n") ? 2 : 1);
  }
}

}  // namespace sab::check
