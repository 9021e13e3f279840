#include "templates/txt_template_file_parser.h"

#include <optional>
#include <string>

#include "base/com_error.h"
#include "platform/file.h"
#include "platform/resource_strings.h"
#include "templates/text_decoding.h"

namespace sab {
namespace {

std::size_t CheckedIndex(INT index, std::size_t count, const char* what) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return static_cast<std::size_t>(index);
  throw ComError(E_INVALIDARG, "There is no " + std::string(what) + " " + std::to_string(index) +
                                   ": there are " + std::to_string(count) + ", counted from 0.");
}

unsigned DefaultMarkerCount() {
  unsigned count = 0;
  while (!OwnString(kFirstDefaultMarker + count).empty()) ++count;
  return count;
}

}  // namespace

HRESULT CVeTxtTemplateFileParser::Load(BSTR i_bsPath) {
  return Guarded([&] {
    const TextView path = Bstr::ViewOf(i_bsPath);
    if (path.empty()) throw ComError(kDocumentNotLoaded, "No file is named: give Load a path.");
    std::string reason;
    const std::optional<std::string> bytes = ReadFileBytes(path, reason);
    if (!bytes) throw ComError(kDocumentNotLoaded, ToUtf8(path) + ": " + reason);
    try {
      template_ = TextTemplate(DecodePlainText(*bytes));
    } catch (const std::system_error& error) {
      throw ComError(ResultOfSystemError(error), ToUtf8(path) + ": " + error.what());
    }
  });
}

HRESULT CVeTxtTemplateFileParser::get_SectionCount(INT* pVal) {
  return Reported(GetField(static_cast<INT>(template_.SectionCount()), pVal));
}

HRESULT CVeTxtTemplateFileParser::get_SectionName(INT i_iSection, BSTR* pVal) {
  if (!pVal) return Reported(E_POINTER);
  *pVal = nullptr;
  return Guarded([&] {
    const std::size_t section = CheckedIndex(i_iSection, template_.SectionCount(), "section");
    *pVal = Bstr(template_.NameOf(section)).Detach();
  });
}

HRESULT CVeTxtTemplateFileParser::FindSection(BSTR i_bsName, INT* o_piSection) {
  if (!o_piSection) return Reported(E_POINTER);
  *o_piSection = -1;
  return Guarded([&] {
    const std::optional<std::size_t> found = template_.Find(Bstr::ViewOf(i_bsName));
    if (found) *o_piSection = static_cast<INT>(*found);
  });
}

HRESULT CVeTxtTemplateFileParser::get_LineCount(INT i_iSection, INT* pVal) {
  if (!pVal) return Reported(E_POINTER);
  *pVal = 0;
  return Guarded([&] {
    const std::size_t section = CheckedIndex(i_iSection, template_.SectionCount(), "section");
    *pVal = static_cast<INT>(template_.LineCount(section));
  });
}

HRESULT CVeTxtTemplateFileParser::get_Line(INT i_iSection, INT i_iLine, BSTR* pVal) {
  if (!pVal) return Reported(E_POINTER);
  *pVal = nullptr;
  return Guarded([&] {
    const std::size_t section = CheckedIndex(i_iSection, template_.SectionCount(), "section");
    const std::size_t line = CheckedIndex(i_iLine, template_.LineCount(section), "line");
    *pVal = Bstr(template_.LineAt(section, line)).Detach();
  });
}

HRESULT CVeTxtTemplateFileParser::get_DefaultMarkerCount(INT* pVal) {
  if (!pVal) return Reported(E_POINTER);
  *pVal = 0;
  return Guarded([&] { *pVal = static_cast<INT>(DefaultMarkerCount()); });
}

HRESULT CVeTxtTemplateFileParser::get_DefaultMarker(INT i_iIndex, BSTR* pVal) {
  if (!pVal) return Reported(E_POINTER);
  *pVal = nullptr;
  return Guarded([&] {
    const std::size_t index = CheckedIndex(i_iIndex, DefaultMarkerCount(), "default marker");
    *pVal = Bstr(OwnString(kFirstDefaultMarker + static_cast<unsigned>(index))).Detach();
  });
}

}  // namespace sab
