#include "platform/document_edits.h"

#include "base/com_error.h"
#include "platform/file.h"
#include "platform/file_name.h"
#include "xml/characters.h"
#include "xml/error.h"

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

namespace backend {

AppendedElement AppendTo(xml::Editor& editor, xml::NodeIndex parent, std::string_view name,
                         TextView text) {
  CheckElementName(name);
  return AppendedElement(editor.Append(parent, name, ToUtf16(text)));
}

void SetTextOf(xml::Editor& editor, xml::NodeIndex element, TextView text) {
  editor.SetText(element, ToUtf16(text));
}

void SaveEdits(const xml::Editor& editor, TextView file) {
  std::string bytes;
  try {
    bytes = editor.Serialise();
  } catch (const xml::Error& error) {
    throw ComError(E_INVALIDARG, "cannot write " + ToUtf8(file) + ": " + error.what());
  }
  ReplaceFileBytes(file, bytes);
}

void RefuseToOverwrite(TextView file, const LoadFailure& failure) {
  if (const char* const reason = ReasonAgainstName(file))
    throw ComError(E_INVALIDARG, "cannot write " + ToUtf8(file) + ": " + reason);
  if (failure.is_missing || failure.reason.empty()) return CheckReplaceable(file);
  throw ComError(
      kDocumentNotLoaded,
      ToUtf8(file) + " is left as it is, because it could not be read: " + failure.Describe());
}

std::string BytesOfNewDocument(std::string_view root_name) {
  CheckElementName(root_name);
  return "<?xml version='1.0' encoding='UTF-8'?>\r\n<" + std::string(root_name) + "/>\r\n";
}

}  // namespace backend
}  // namespace sab
