#pragma once

#include <string_view>

#include "object/component.h"
#include "templates/text_template.h"

namespace sab {

/// Reads the text template of a title block or of a bill of materials. Sections and lines are
/// counted from 0 in the order of the file; an index outside gives E_INVALIDARG. A Load that fails
/// leaves what an earlier one has read.
class CVeTxtTemplateFileParser : public ComponentBase<coclass::VeTxtTemplateFileParser> {
 public:
  /// Gives 0x84000C06 for a file that cannot be read; nothing that a file holds makes it fail.
  HRESULT STDMETHODCALLTYPE Load(BSTR i_bsPath) override;

  HRESULT STDMETHODCALLTYPE get_SectionCount(INT* pVal) override;
  /// Empty for the lines before the first marker.
  HRESULT STDMETHODCALLTYPE get_SectionName(INT i_iSection, BSTR* pVal) override;
  /// Gives -1 if no section has the name; case does not matter.
  HRESULT STDMETHODCALLTYPE FindSection(BSTR i_bsName, INT* o_piSection) override;
  HRESULT STDMETHODCALLTYPE get_LineCount(INT i_iSection, INT* pVal) override;
  HRESULT STDMETHODCALLTYPE get_Line(INT i_iSection, INT i_iLine, BSTR* pVal) override;

  /// The names that sections have by default, whatever is loaded: string resources.
  HRESULT STDMETHODCALLTYPE get_DefaultMarkerCount(INT* pVal) override;
  HRESULT STDMETHODCALLTYPE get_DefaultMarker(INT i_iIndex, BSTR* pVal) override;

 private:
  TextTemplate template_;
};

}  // namespace sab
