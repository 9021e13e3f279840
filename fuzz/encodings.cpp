// A document in UTF-8 and the same in another encoding: the same elements, or both refused.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "fuzz/choices.h"
#include "text/utf.h"
#include "xml/document.h"
#include "xml/edit.h"
#include "xml/error.h"

namespace {

using sab::fuzz::Require;
using sab::xml::Document;
using sab::xml::NodeIndex;

constexpr std::array kNames = {"UTF-16",    "GBK",          "GB18030",    "Big5",
                               "Shift_JIS", "windows-1252", "ISO-8859-5", "EUC-KR"};

std::string Declaration(const std::string& name) {
  return "<?xml version='1.0' encoding='" + name + "'?>";
}

// An encoding without a document: it is known by its first bytes.
sab::xml::Encoding EncodingOf(const std::string& name, bool is_big_endian) {
  if (name != "UTF-16") return sab::xml::Encoding(Declaration(name));
  return sab::xml::Encoding(is_big_endian ? "\xFE\xFF" : "\xFF\xFE");
}

// Every node's type, place and text, and every element's tag with its name and attributes; on
// request those of the changed document.
std::optional<std::u16string> Reading(const std::string& bytes, bool is_changed) {
  try {
    const Document document(bytes);
    if (is_changed) {
      sab::xml::Editor editor(document);
      editor.Append(document.Root(), "b", u"\u4E2D\u00E9 <");
      return Reading(editor.Serialise(), false);
    }
    std::u16string all;
    for (NodeIndex node = 1; node < document.NodeCount(); ++node) {
      const auto type = static_cast<char16_t>(document.TypeOf(node));
      all += {type, static_cast<char16_t>(document.ParentOf(node)), u'|'};
      document.AppendText(node, all);
      if (!document.IsElement(node)) continue;
      const std::size_t start = document.At(node).start;
      sab::xml::AppendUtf16(document.TextBytes().substr(start, document.ContentStart(node) - start),
                            all);
    }
    return all;
  } catch (const sab::xml::Error&) {
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return -1;
  const std::string body(reinterpret_cast<const char*>(data + 1), size - 1);
  if (!sab::text::IsUtf8(body)) return -1;
  const std::string name = kNames[data[0] % kNames.size()];
  const sab::xml::Encoding encoding = EncodingOf(name, data[0] >= 128);
  if (!encoding.CanEncode(body)) return -1;
  const std::string mark = name != "UTF-16" ? "" : data[0] >= 128 ? "\xFE\xFF" : "\xFF\xFE";
  const std::string other = mark + encoding.Encode(Declaration(name) + body);
  for (const bool is_changed : {false, true})
    Require(Reading(Declaration("UTF-8") + body, is_changed) == Reading(other, is_changed));
  return 0;
}
