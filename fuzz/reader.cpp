// Any bytes as a document: reading ends with a document or an Error, agrees with expat and
// libxml2 on which and with libxml2 on every name, text and attribute.

#include <string>

#include "fuzz/choices.h"
#include "text/utf.h"
#include "xml/document.h"
#include "xml/error.h"
#include "xml/oracles.h"
#include "xml/text.h"

namespace {

using sab::fuzz::Require;
using sab::xml::Document;
using sab::xml::NodeIndex;

// Without white space: what counts of that is another matter.
std::string Comparable(std::string text) {
  std::erase_if(text, [](char c) { return sab::xml::IsTrimmed(static_cast<unsigned char>(c)); });
  return text;
}

void RequireSame(const std::vector<sab::xml::testing::OracleElement>& expected,
                 const Document& document) {
  auto next = expected.begin();
  for (NodeIndex node = 1; node < document.NodeCount(); ++node) {
    if (!document.IsElement(node)) continue;
    Require(next != expected.end() && document.NameOf(node) == next->name);
    std::u16string text;
    document.AppendText(node, text);
    Require(Comparable(sab::text::ToUtf8(std::u16string_view(text))) == Comparable(next->text));
    for (const auto& [name, value] : next->attributes) {
      const auto own = document.AttributeOf(node, name);
      Require(own && Comparable(sab::text::ToUtf8(std::u16string_view(*own))) == Comparable(value));
    }
    ++next;
  }
  Require(next == expected.end());
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
  const bool expat_accepts = sab::xml::testing::ExpatAccepts(bytes);
  const auto by_libxml = sab::xml::testing::LibxmlElements(bytes);
  try {
    const Document document(bytes);
    // They know fewer encodings, and a mark does not keep them from refusing the one that is
    // declared.
    const sab::xml::Encoding& encoding = document.GetEncoding();
    if (!encoding.IsUtf8() || encoding.BomLength() != 0) return 0;
    Require(expat_accepts || !by_libxml.empty());
    if (!by_libxml.empty()) RequireSame(by_libxml, document);
  } catch (const sab::xml::Error& error) {
    Require(!expat_accepts || by_libxml.empty() || IsOwnRule(error.what()));
  }
  return 0;
}
