// Any bytes as a document: reading ends with a document or an Error, agrees with expat and
// libxml2 on which, and what is read can be walked, changed and read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "xml/document.h"
#include "xml/edit.h"
#include "xml/error.h"
#include "xml/oracles.h"
#include "xml/same_elements.h"

namespace {

using sab::xml::Document;
using sab::xml::NodeIndex;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::size_t CountElements(const Document& document) {
  std::size_t count = 0;
  std::u16string text;
  for (NodeIndex node = 1; node < document.NodeCount(); ++node) {
    if (!document.IsElement(node)) continue;
    ++count;
    document.AppendText(node, text);
    Require(document.FirstChild(node) == sab::xml::kNoNode ||
            document.EndOf(node) > document.FirstChild(node));
  }
  return count;
}

// What was appended is there when the result is read, and nothing else has come or gone.
void ChangeAndReadAgain(const Document& document, NodeIndex parent) {
  sab::xml::Editor editor(document);
  editor.Append(parent, "Added", u"x < y");
  const Document changed(editor.Serialise());
  Require(CountElements(changed) == CountElements(document) + 1);
}

// Whether the refusal is ours alone: of what is well-formed and not accepted here, or of what the
// oracles let pass.
bool IsOwnRule(const std::string& reason) {
  for (const char* part : {"document type", "version 1.0", "65535", "encoding", "the file says"}) {
    if (reason.find(part) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

// Where the oracles agree, they must agree with us; names of the fifth edition are strange to
// expat, odd namespaces to libxml2.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const auto by_expat = sab::xml::testing::ExpatElements(bytes);
  const auto by_libxml = sab::xml::testing::LibxmlElements(bytes);
  try {
    const Document document(bytes);
    Require(CountElements(document) > 0);
    ChangeAndReadAgain(document, document.Root());
    // They know fewer encodings, and a mark does not keep them from refusing the one that is
    // declared.
    const sab::xml::Encoding& encoding = document.GetEncoding();
    if (!encoding.IsUtf8() || encoding.BomLength() != 0) return 0;
    Require(!by_expat.empty() || !by_libxml.empty());
    if (!by_expat.empty()) Require(sab::xml::testing::DifferenceFrom(by_expat, document).empty());
    if (!by_libxml.empty()) Require(sab::xml::testing::DifferenceFrom(by_libxml, document).empty());
  } catch (const sab::xml::Error& error) {
    Require(by_expat.empty() || by_libxml.empty() || IsOwnRule(error.what()));
  }
  return 0;
}
