#include "xml/edit.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <sstream>

#include "xml/error.h"
#include "xml/path.h"
#include "xml/text.h"

namespace sab::xml {
namespace {

// Edits are a sign and a path each: + appends <n>1</n>, * appends text and an element, = sets a
// text, - removes.
void Apply(const std::string& edits, const Document& document, Editor& editor) {
  std::istringstream words(edits);
  for (std::string edit; words >> edit;) {
    const NodeIndex element = Paths(document).SelectFirst(edit.substr(1));
    if (edit[0] == '+') editor.Append(element, "n", u"1");
    if (edit[0] == '*') editor.Append(element, "n", u"t").Append("m", u"1");
    if (edit[0] == '=') editor.SetText(element, u"<&>");
    if (edit[0] == '-') editor.Remove(element);
  }
}

TEST(Editor, EachEditChangesItsPlaceAndNothingElse) {
  const struct {
    const char* edits;
    const char* before;
    const char* after;
  } rows[] = {
      // Appended: in line, or on a line of its own.
      {"+r/g", "<r><g><a/></g></r>", "<r><g><a/><n>1</n></g></r>"},
      {"+r/g", "<r><g/></r>", "<r><g><n>1</n></g></r>"},
      {"+r/g", "<r><g a='1' /></r>", "<r><g a='1'><n>1</n></g></r>"},
      {"+r/g", "<r>\n\t<g>\n\t\t<a/>\n\t</g>\n</r>",
       "<r>\n\t<g>\n\t\t<a/>\n\t\t<n>1</n>\n\t</g>\n</r>"},
      {"+r/g", "<r>\r\n  <g>\r\n    <a/>\r\n  </g>\r\n</r>",
       "<r>\r\n  <g>\r\n    <a/>\r\n    <n>1</n>\r\n  </g>\r\n</r>"},
      {"+r/g", "<r>\n <g>\n  <a/>\n  <!-- c -->\n </g>\n</r>",
       "<r>\n <g>\n  <a/>\n  <!-- c -->\n  <n>1</n>\n </g>\n</r>"},
      {"+r/g", "<r>\n    <g/>\n</r>", "<r>\n    <g>\n        <n>1</n>\n    </g>\n</r>"},
      {"+r/g", "<r>\n  <g>\n  </g>\n</r>", "<r>\n  <g>\n    <n>1</n>\n  </g>\n</r>"},
      {"+r/g", "<r>\n <g>text</g>\n</r>", "<r>\n <g>text<n>1</n></g>\n</r>"},
      {"+r/g", "<r>\n <g xml:space='preserve'><a/>\n </g>\n</r>",
       "<r>\n <g xml:space='preserve'><a/>\n <n>1</n></g>\n</r>"},
      {"*r/g", "<r>\n <g>\n </g>\n</r>", "<r>\n <g>\n  <n>t<m>1</m></n>\n </g>\n</r>"},
      {"+r/g/b +r/g", "<r>\n <g>\n  <b/>\n </g>\n</r>",
       "<r>\n <g>\n  <b>\n   <n>1</n>\n  </b>\n  <n>1</n>\n </g>\n</r>"},
      // A text replaced, an element with its line removed.
      {"=r/g", "<r><g>a<b/>&amp;</g> </r>", "<r><g>&lt;&amp;&gt;</g> </r>"},
      {"=r/g", "<r><g  /></r>", "<r><g>&lt;&amp;&gt;</g></r>"},
      {"-r/g", "<r>\n  <g/>\n  <h/>\n</r>", "<r>\n  <h/>\n</r>"},
      {"-r/g", "<r><a/><g>x</g><h/></r>", "<r><a/><h/></r>"},
      {"-r/g", "<r>\r\n  <a/>\r\n  <g>\r\n  </g>  \r\n</r>", "<r>\r\n  <a/>\r\n</r>"},
      // Several together.
      {"-r/g/b +r/g", "<r>\n  <g>\n    <a/>\n    <b/>\n  </g>\n</r>",
       "<r>\n  <g>\n    <a/>\n    <n>1</n>\n  </g>\n</r>"},
      {"-r/g/b +r/g", "<r>\n  <g>\n    <b/> \n  </g>\n</r>",
       "<r>\n  <g>\n    <n>1</n>\n  </g>\n</r>"},
      {"-r/g/b +r/g", "<r><g><a/><b/></g></r>", "<r><g><a/><n>1</n></g></r>"},
      {"+r/g =r/g", "<r>\n <g>\n  <a/>\n </g>\n</r>", "<r>\n <g>&lt;&amp;&gt;<n>1</n></g>\n</r>"},
      {"+r/g =r/g", "<r>\n <g a='/>' />\n</r>", "<r>\n <g a='/>'>&lt;&amp;&gt;<n>1</n></g>\n</r>"},
      {"=r/g/a +r/g -r/g", "<r><g><a/></g></r>", "<r></r>"},
  };
  for (const auto& row : rows) {
    const Document document(row.before);
    Editor editor(document);
    EXPECT_EQ(row.before, editor.Serialise());
    Apply(row.edits, document, editor);
    EXPECT_EQ(row.after, editor.Serialise());
  }
}

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

class RandomDocument {
 public:
  explicit RandomDocument(unsigned seed) : random_(seed), line_end_(Pick(2) ? "\n" : "\r\n") {}

  unsigned Pick(unsigned bound) { return static_cast<unsigned>(random_() % bound); }

  // With a Chinese name, text and attribute here and there, in one of several encodings.
  std::string Bytes() {
    const char* const encodings[] = {"UTF-8", "GB2312", "Big5", "UTF-16"};
    const std::string encoding = encodings[Pick(4)];
    const std::string declaration = "<?xml version='1.0' encoding='" + encoding + "'?>";
    const std::string mark = encoding == "UTF-16" ? "\xFF\xFE" : "";
    const Encoding target(mark.empty() ? declaration : mark);
    return mark + target.Encode(declaration + line_end_ + Element(0, Pick(4) > 0));
  }

 private:
  std::string Element(unsigned depth, bool has_lines) {
    const char* const names[] = {"a", "b", "c-d", "\u4E2D"};
    const std::string name = names[Pick(4)];
    const std::string indentation = has_lines ? line_end_ + std::string(depth + 1, '\t') : "";
    const char* const attributes[] = {"", " x = '>'", " y=\"&#65;\u6587\"", ""};
    std::string tag = name + attributes[Pick(4)];
    if (Pick(6) == 0) return '<' + tag + (Pick(2) ? " />" : "/>");
    if (Pick(3) == 0 && depth > 0) return '<' + tag + ">text\u6587&amp;</" + name + " >";
    std::string content;
    for (unsigned i = depth < 4 ? Pick(5) : 0; i > 0; --i) {
      const unsigned kind = Pick(8);
      if (kind == 0) {
        content += "<!-- \u4E2D -->";
      } else if (kind == 1) {
        content += "mixed";
      } else {
        content += indentation + Element(depth + 1, has_lines);
      }
    }
    if (has_lines) content += line_end_ + std::string(depth, '\t');
    return '<' + tag + '>' + content + "</" + name + '>';
  }

  std::mt19937 random_;
  std::string line_end_;
};

TEST(Editor, AnyChangesTogetherGiveTheDocumentThatTheyDescribe) {
  for (unsigned round = 0; round < 2000; ++round) {
    RandomDocument random(round);
    const Document document(random.Bytes());
    Editor editor(document);
    Changes changes;
    for (unsigned i = random.Pick(5); i > 0; --i) {
      const NodeIndex node = 1 + random.Pick(document.NodeCount() - 1);
      if (!document.IsElement(node)) continue;
      switch (random.Pick(3)) {
        case 0:
          if (node == document.Root()) break;
          editor.Remove(node);
          changes.removed.insert(node);
          break;
        case 1:
          editor.SetText(node, u"new\u6587");
          changes.texts[node] = "new\u6587";
          break;
        default:
          editor.Append(node, "e", u"").Append("f", u"\u4E2D<");
          changes.added[node] += "<e><f>\u4E2D&lt;</f></e>";
      }
    }
    const std::string changed = editor.Serialise();
    const Document again(changed);
    ASSERT_EQ(Described(document, changes), Described(again, {}))
        << document.TextBytes() << "\n=>\n"
        << again.TextBytes();
  }
}

// Removing what was appended gives the bytes that were there, in any encoding.
TEST(Editor, AppendingKeepsEveryOtherByte) {
  int compared = 0;
  for (unsigned round = 0; round < 4000; ++round) {
    RandomDocument random(round);
    const std::string bytes = random.Bytes();
    const Document document(bytes);
    Editor adding(document);
    for (NodeIndex node = 1; node < document.NodeCount(); ++node) {
      // An element without text and elements is opened for its first child and stays open.
      const bool has_content =
          document.HasOnlyText(node) || document.FirstChildElement(node) != kNoNode;
      if (!document.IsElement(node) || !has_content || random.Pick(3) > 0) continue;
      adding.Append(node, "zz", u"1").Append("y", u"\u4E2D");
      adding.Append(node, "zz", u"").Append("y", u"\u6587");
      ++compared;
    }
    const Document added(adding.Serialise());
    Editor removing(added);
    for (const NodeIndex node : Paths(added).SelectAll("//zz")) removing.Remove(node);
    ASSERT_EQ(bytes, removing.Serialise()) << added.TextBytes();
  }
  EXPECT_GT(compared, 2000);
}

TEST(Editor, WhatTheFileCannotHoldIsRefused) {
  const Document document("<r/>");
  for (const std::u16string text : {u"\x0001", u"\xFFFE", u"\xD800"}) {
    Editor editor(document);
    editor.SetText(document.Root(), text);
    EXPECT_THROW(editor.Serialise(), Error);
  }
  Editor removing(document);
  removing.Remove(document.Root());
  EXPECT_THROW(removing.Serialise(), Error);
  // A text may fall back to references, a name cannot.
  const Document latin("<?xml version='1.0' encoding='ISO-8859-1'?><r/>");
  Editor editor(latin);
  editor.Append(latin.Root(), "\u00E9", u"\u4E2D");
  EXPECT_NE(editor.Serialise().find("<r><\xE9>&#20013;</\xE9></r>"), std::string::npos);
  editor.Append(latin.Root(), "\u4E2D", u"");
  EXPECT_THROW(editor.Serialise(), Error);
}

}  // namespace
}  // namespace sab::xml
