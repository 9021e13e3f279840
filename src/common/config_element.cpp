#include "common/config_element.h"

#include "base/com_error.h"
#include "xml/characters.h"

namespace sab {
namespace {

bool IsName(const std::string& name) {
  for (std::size_t i = 0; i < name.size();) {
    const xml::Decoded next = xml::Decode(name.c_str() + i);
    if (next.length == 0 || next.code == ':' ||
        !(i == 0 ? xml::IsNameStart(next.code) : xml::IsNameCharacter(next.code)))
      return false;
    i += next.length;
  }
  return !name.empty();
}

std::u16string ToUtf16(TextView text) { return std::u16string(text.begin(), text.end()); }

}  // namespace

void CheckElementName(std::string_view name) {
  if (!IsName(std::string(name)))
    throw ComError(E_INVALIDARG, "\"" + std::string(name) +
                                     "\" cannot name an XML element: use letters, digits, - and _, "
                                     "and a letter first");
}

AppendedElement AppendedElement::Append(std::string_view name, TextView text) {
  CheckElementName(name);
  return AppendedElement(element_->Append(name, ToUtf16(text)));
}

TextPosition ConfigElement::Position() const {
  const xml::Place place = Xml().PlaceOfNode(place_.node);
  return {place.line, place.column};
}

AppendedElement ConfigElement::Append(std::string_view name, TextView text) {
  CheckElementName(name);
  return AppendedElement(place_.document->editor.Append(place_.node, name, ToUtf16(text)));
}

void ConfigElement::SetText(TextView text) {
  place_.document->editor.SetText(place_.node, ToUtf16(text));
}

}  // namespace sab
