#include "templates/txt_template_file_parser.h"

#include <optional>
#include <string>

#include "base/com_error.h"
#include "common/indexes.h"
#include "platform/file.h"
#include "platform/resource_strings.h"
#include "xml/plain_text.h"

namespace sab {

void TxtTemplateFileFields::Load(TextView path) {
  if (path.empty()) throw ComError(kDocumentNotLoaded, "No file is named: give Load a path.");
  std::string reason;
  const std::optional<std::string> bytes = ReadFileBytes(path, reason);
  if (!bytes) throw ComError(kDocumentNotLoaded, ToUtf8(path) + ": " + reason);
  try {
    text = TextTemplate(FromUtf8(xml::DecodePlainText(*bytes)));
  } catch (const std::system_error& error) {
    throw ComError(ResultOfSystemError(error), ToUtf8(path) + ": " + error.what());
  }
}

TextView TxtTemplateFileFields::SectionName(INT section) const {
  return text.NameOf(CheckedIndex(section, text.SectionCount(), "section"));
}

INT TxtTemplateFileFields::FindSection(TextView name) const {
  const std::optional<std::size_t> found = text.Find(name);
  return found ? static_cast<INT>(*found) : -1;
}

INT TxtTemplateFileFields::LineCount(INT section) const {
  return static_cast<INT>(text.LineCount(CheckedIndex(section, text.SectionCount(), "section")));
}

TextView TxtTemplateFileFields::Line(INT section_index, INT line) const {
  const std::size_t section = CheckedIndex(section_index, text.SectionCount(), "section");
  return text.LineAt(section, CheckedIndex(line, text.LineCount(section), "line"));
}

INT TxtTemplateFileFields::DefaultMarkerCount() const {
  unsigned count = 0;
  while (!OwnString(kFirstDefaultMarker + count).empty()) ++count;
  return static_cast<INT>(count);
}

Bstr TxtTemplateFileFields::DefaultMarker(INT index) const {
  const auto count = static_cast<std::size_t>(DefaultMarkerCount());
  const std::size_t marker = CheckedIndex(index, count, "default marker");
  return Bstr(OwnString(kFirstDefaultMarker + static_cast<unsigned>(marker)));
}

}  // namespace sab
