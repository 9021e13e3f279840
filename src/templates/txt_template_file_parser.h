#pragma once

#include "object/component.h"
#include "templates/text_template.h"

namespace sab {

/// Reads the text template of a title block or of a bill of materials. Sections and lines are
/// counted from 0 in the order of the file; an index outside gives E_INVALIDARG. A Load that fails
/// leaves what an earlier one has read.
struct TxtTemplateFileFields {
  TextTemplate text = TextTemplate();

  /// Gives 0x84000C06 for a file that cannot be read; nothing that a file holds makes it fail.
  void Load(TextView path);

  INT SectionCount() const noexcept { return static_cast<INT>(text.SectionCount()); }
  /// Empty for the lines before the first marker.
  TextView SectionName(INT section) const;
  /// Gives -1 if no section has the name; case does not matter.
  INT FindSection(TextView name) const;
  INT LineCount(INT section) const;
  TextView Line(INT section, INT line) const;

  /// The names that sections have by default, whatever is loaded: string resources.
  INT DefaultMarkerCount() const;
  Bstr DefaultMarker(INT index) const;
};
using CVeTxtTemplateFileParser = Component<coclass::VeTxtTemplateFileParser, TxtTemplateFileFields>;

}  // namespace sab
