// Any document: changes of any of its elements together give the document that they describe, and
// appending keeps every byte.

#include "xml/edit.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/choices.h"
#include "xml/document.h"
#include "xml/error.h"
#include "xml/text.h"

namespace {

using namespace sab::xml;
using sab::fuzz::Choices;
using sab::fuzz::Require;

// What a document says, apart from its white space: start tags, texts, comments. Changes that are
// asked for are applied on the way.
struct Changes {
  std::map<NodeIndex, std::string> texts;
  std::map<NodeIndex, std::string> added;  // as markup
  std::set<NodeIndex> removed;
};

void Describe(const Document& document, NodeIndex parent, const Changes& changes,
              std::string& out) {
  const std::string_view text = document.TextBytes();
  for (NodeIndex node = document.FirstChild(parent); node != kNoNode;
       node = document.NextSibling(node)) {
    if (changes.removed.contains(node)) continue;
    if (!document.IsElement(node)) {
      out += text.substr(document.At(node).start, document.At(node).end - document.At(node).start);
      continue;
    }
    const bool is_empty_tag = (document.At(node).flags & kIsEmptyTag) != 0;
    const std::size_t start = document.At(node).start;
    const std::size_t content = document.ContentStart(node);
    out += text.substr(start, content - start - (is_empty_tag ? 2 : 1));
    out += '>';
    const auto found_text = changes.texts.find(node);
    if (found_text != changes.texts.end()) {
      out += found_text->second;
    } else if (document.HasOnlyText(node)) {
      out += text.substr(content, document.At(node).end - content);
    } else {
      Describe(document, node, changes, out);
    }
    const auto found_added = changes.added.find(node);
    if (found_added != changes.added.end()) out += found_added->second;
    out += "</" + std::string(document.NameOf(node)) + '>';
  }
}

std::string Described(const Document& document, const Changes& changes) {
  std::string text;
  Describe(document, kNoNode, changes, text);
  std::erase_if(text, [](char c) { return IsTrimmed(static_cast<unsigned char>(c)); });
  return text;
}

void ChangeAny(const Document& document, Choices& choices) {
  Editor editor(document);
  Changes changes;
  for (std::size_t i = choices.Below(5); i > 0; --i) {
    const auto node = static_cast<NodeIndex>(1 + choices.Below(document.NodeCount() - 1));
    if (!document.IsElement(node)) continue;
    switch (choices.Below(3)) {
      case 0:
        if (node == document.Root()) break;
        editor.Remove(node);
        changes.removed.insert(node);
        break;
      case 1:
        editor.SetText(node, u"new\u00E9<");
        changes.texts[node] = "new\u00E9&lt;";
        break;
      default:
        editor.Append(node, "e", u"").Append("f", u"<");
        changes.added[node] += "<e><f>&lt;</f></e>";
    }
  }
  const Document changed(editor.Serialise());
  Require(Described(document, changes) == Described(changed, {}));
}

// Whether every byte of a text, in its order, is in another.
bool IsWithin(std::string_view text, std::string_view other) {
  std::size_t found = 0;
  for (const char byte : other) found += found < text.size() && byte == text[found] ? 1 : 0;
  return found == text.size();
}

void Append(const std::string& bytes, const Document& document, Choices& choices) {
  Editor editor(document);
  for (NodeIndex node = 1; node < document.NodeCount(); ++node) {
    // An element without text and elements is opened for its first child.
    const bool has_content =
        document.HasOnlyText(node) || document.FirstChildElement(node) != kNoNode;
    if (document.IsElement(node) && has_content && choices.Below(3) == 0)
      editor.Append(node, "zz", u"1").Append("y", u"\u4E2D");
  }
  Require(IsWithin(bytes, editor.Serialise()));
}

}  // namespace

// Which elements are changed follows from the bytes of the document themselves.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::optional<Document> document;
  try {
    document.emplace(bytes);
  } catch (const Error&) {
    return 0;
  }
  Choices choices(data + size / 2, size - size / 2);
  ChangeAny(*document, choices);
  Append(bytes, *document, choices);
  return 0;
}
