#include "binding/document_reader.h"

namespace sab {
namespace {

using formats::Need;

std::string Quoted(std::string_view name) { return "a " + std::string(name); }

// What helps against a list without an entry: "give it a Template with a Path".
std::string EntryComplaint(const formats::Rule& container) {
  const formats::Rule& entry = container.Content().front();
  std::string complaint = "has no entry: give it " + Quoted(entry.name) + " with ";
  complaint += entry.content ? Quoted(entry.Content().front().name) : "a text";
  if (container.need == Need::kEntryIfPresent) complaint += ", or leave it out";
  return complaint;
}

void ReadValue(DocumentReader& file, const BoundPath& value, Reading& reading, void* owner) {
  const formats::Rule& rule = *value.rule;
  const ConfigElement element = file.Find(value.path);
  reading.text.clear();
  if (element) {
    element.ReadText(reading.text);
  } else if (rule.IsRequired()) {
    file.Fail(rule, value.path, "is missing: add the element with its text");
  } else if (rule.when_missing.empty()) {
    return;
  }
  const bool is_empty = reading.text.empty();
  if (is_empty && (!element || rule.also_when_empty)) AppendAscii(reading.text, rule.when_missing);
  if (!is_empty || rule.need != Need::kFilled) value.bound.put(reading, owner);
  if (is_empty && (rule.need == Need::kNotEmpty || rule.need == Need::kFilled)) {
    file.Fail(rule, value.path, "is empty: give the element a text");
  }
}

void ReadContainer(DocumentReader& file, const BoundPath& container, Reading& reading,
                   void* owner) {
  const ConfigElement element = file.Find(container.path);
  if (element) ReadElements(reading, element, *container.bound.content, owner);
  const Need need = container.rule->need;
  const bool needs_entry = need == Need::kNotEmpty || (element && need == Need::kEntryIfPresent);
  if (needs_entry && container.is_empty(owner)) {
    file.Fail(*container.rule, container.path, EntryComplaint(*container.rule));
  }
}

}  // namespace

DocumentReader::DocumentReader(const formats::Document& document, TextView file)
    : form_(document), file_(ToUtf8(file)) {
  if (file.empty()) {
    throw ComError(kDocumentNotLoaded, form_.method == "Load"
                                           ? "No file is named: give Load a path."
                                           : "No file is named: put ConfigurationPath first.");
  }
  if (!document_.Load(file)) throw ComError(kDocumentNotLoaded, document_.Failure().Describe());
}

ConfigElement DocumentReader::Root() {
  const ConfigElement root = document_.Select(form_.root);
  if (!root) {
    Fail(form_.result, "the document element",
         "must be <" + std::string(form_.root) + ">, spelt so");
  }
  return root;
}

ConfigElement DocumentReader::Find(std::string_view path) {
  return document_.Select(std::string(form_.root).append("/").append(path));
}

void DocumentReader::Fail(std::uint32_t result, std::string_view path,
                          std::string_view complaint) const {
  throw ComError(static_cast<HRESULT>(result),
                 file_ + ": " + std::string(path) + " " + std::string(complaint) + ".");
}

void DocumentReader::Fail(const formats::Rule& rule, std::string_view path,
                          std::string_view complaint) const {
  Fail(rule.result ? rule.result : form_.result, std::string(form_.root) + "/" + std::string(path),
       complaint);
}

void ReadDocument(const BoundDocument& document, TextView file, void* owner) {
  DocumentReader reader(*document.form, file);
  Reading reading;
  for (const BoundPath& path : document.paths) {
    (path.bound.put ? ReadValue : ReadContainer)(reader, path, reading, owner);
  }
}

}  // namespace sab
