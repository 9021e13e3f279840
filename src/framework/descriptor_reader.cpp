#include "framework/descriptor_reader.h"

#include <utility>

#include "base/com_error.h"

namespace sab {

DescriptorReader::DescriptorReader(const Bstr& configuration_path)
    : file_(ToUtf8(configuration_path.View())) {
  if (configuration_path.IsEmpty()) {
    throw ComError(kDocumentNotLoaded, "No file is named: put ConfigurationPath first.");
  }
  if (!document_.Load(configuration_path.View())) {
    throw ComError(kDocumentNotLoaded, document_.Failure().Describe());
  }
}

bool DescriptorReader::Read(std::string_view path, Bstr& member) {
  const ConfigElement element = Find(path);
  if (!element) return false;
  element.ReadText(scratch_);
  member.Assign(scratch_);
  return true;
}

void DescriptorReader::ReadRequired(std::string_view path, Bstr& member, HRESULT code) {
  if (!Read(path, member)) Fail(code, path, "is missing: add the element with its text");
  if (member.IsEmpty()) Fail(code, path, "is empty: give the element a text");
}

void DescriptorReader::ReadNonEmpty(std::string_view path, Bstr& member, HRESULT code) {
  Bstr text;
  ReadRequired(path, text, code);
  member = std::move(text);
}

void DescriptorReader::Fail(HRESULT code, std::string_view path, std::string_view complaint) const {
  throw ComError(code, file_ + ": " + std::string(path) + " " + std::string(complaint) + ".");
}

}  // namespace sab
