#pragma once

#include <optional>
#include <vector>

#include "base/text.h"

namespace sab {

/// A plain text in sections.
///
/// A line "[name]" begins a section: the bracket is in the first column, nothing but white
/// space follows the closing one, and white space around the name does not count. A name is not
/// empty and has no brackets; several sections may have the same name. All lines up to the next
/// marker belong to the section, as they are, blank ones too; only of a line that begins with "[["
/// the first bracket is left out. Lines before the first marker are a section without a name, which
/// there is only if one of them is not blank.
///
/// Lines end with CR LF, LF or CR; what follows the last line end is a line unless it is empty.
class TextTemplate {
 public:
  explicit TextTemplate(Text text = {});

  std::size_t SectionCount() const { return sections_.size(); }
  std::size_t LineCount(std::size_t section) const { return sections_[section].line_count; }
  /// Views live as long as the template.
  TextView NameOf(std::size_t section) const { return ViewOf(sections_[section].name); }
  TextView LineAt(std::size_t section, std::size_t line) const {
    return ViewOf(lines_[sections_[section].first_line + line]);
  }
  /// The first section of this name, whatever the case of its letters; the empty name is that of
  /// the section without one.
  std::optional<std::size_t> Find(TextView name) const;

 private:
  struct Span {
    std::size_t start;
    std::size_t length;
  };
  struct Section {
    Span name;
    std::size_t first_line;
    std::size_t line_count;
  };

  TextView ViewOf(Span span) const { return TextView(text_).substr(span.start, span.length); }
  void AddLine(Span line);
  bool HasOnlyBlankLines() const;

  Text text_;
  std::vector<Span> lines_;  // of all sections
  std::vector<Section> sections_;
};

}  // namespace sab
