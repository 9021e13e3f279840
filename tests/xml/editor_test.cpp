#include "xml/edit.h"

#include <gtest/gtest.h>

#include <random>

#include "xml/error.h"
#include "xml/path.h"

namespace sab::xml {
namespace {

TEST(Editor, EachEditChangesItsPlaceAndNothingElse) {
  using Edit = void (*)(Editor&, const Document&);
  constexpr Edit kAppend = [](Editor& editor, const Document& document) {
    editor.Append(SelectFirst(document, "r/g"), "n", u"1");
  };
  constexpr Edit kText = [](Editor& editor, const Document& document) {
    editor.SetText(SelectFirst(document, "r/g"), u"<&>");
  };
  constexpr Edit kRemove = [](Editor& editor, const Document& document) {
    editor.Remove(SelectFirst(document, "r/g"));
  };
  const struct {
    const char* name;
    Edit edit;
    const char* before;
    const char* after;
  } rows[] = {
      {"append in line", kAppend, "<r><g><a/></g></r>", "<r><g><a/><n>1</n></g></r>"},
      {"append to an empty element", kAppend, "<r><g/></r>", "<r><g><n>1</n></g></r>"},
      {"append to an empty element with a space", kAppend, "<r><g a='1' /></r>",
       "<r><g a='1'><n>1</n></g></r>"},
      {"append on a line of its own", kAppend, "<r>\n\t<g>\n\t\t<a/>\n\t</g>\n</r>",
       "<r>\n\t<g>\n\t\t<a/>\n\t\t<n>1</n>\n\t</g>\n</r>"},
      {"append with CRLF", kAppend, "<r>\r\n  <g>\r\n    <a/>\r\n  </g>\r\n</r>",
       "<r>\r\n  <g>\r\n    <a/>\r\n    <n>1</n>\r\n  </g>\r\n</r>"},
      {"append to an empty element on its line", kAppend, "<r>\n    <g/>\n</r>",
       "<r>\n    <g>\n        <n>1</n>\n    </g>\n</r>"},
      {"append between tags on two lines", kAppend, "<r>\n  <g>\n  </g>\n</r>",
       "<r>\n  <g>\n    <n>1</n>\n  </g>\n</r>"},
      {"append behind text", kAppend, "<r>\n <g>text</g>\n</r>", "<r>\n <g>text<n>1</n></g>\n</r>"},
      {"replace a text", kText, "<r><g>a<b/>&amp;</g> </r>", "<r><g>&lt;&amp;&gt;</g> </r>"},
      {"give an empty element a text", kText, "<r><g  /></r>", "<r><g>&lt;&amp;&gt;</g></r>"},
      {"remove a line", kRemove, "<r>\n  <g/>\n  <h/>\n</r>", "<r>\n  <h/>\n</r>"},
      {"remove in line", kRemove, "<r><a/><g>x</g><h/></r>", "<r><a/><h/></r>"},
  };
  for (const auto& row : rows) {
    const Document document(row.before);
    Editor editor(document);
    EXPECT_EQ(row.before, editor.Serialise()) << row.name;
    row.edit(editor, document);
    EXPECT_EQ(row.after, editor.Serialise()) << row.name;
  }
}

// Whatever is appended wherever: the result is read again, and taking out what was put in gives the
// bytes that were there.
TEST(Editor, AppendingKeepsEveryOtherByte) {
  std::mt19937 random(7);
  const std::string samples[] = {
      "<?xml version='1.0' encoding='UTF-8'?>\n<r>\n  <a x='1'>t</a><!-- c -->\n  <b>\n    <c/>\n  "
      "</b>\n  <d/>\n</r>\n",
      "<r><a>one</a> <b><c></c></b></r>", "\xEF\xBB\xBF<r>\r\n\t<a/>\r\n\t<b>&#65;</b>\r\n</r>"};
  for (int round = 0; round < 500; ++round) {
    const std::string& bytes = samples[random() % std::size(samples)];
    const Document document(bytes);
    Editor editor(document);
    for (unsigned i = random() % 4 + 1; i > 0; --i) {
      NodeIndex parent = document.Root();
      while (document.FirstChildElement(parent) != kNoNode && random() % 2) {
        parent = document.FirstChildElement(parent);
      }
      NewElement& added = editor.Append(parent, "zz", u"");
      if (random() % 2) added.Append("zz", u"text \u4E2D");
    }
    std::string changed = editor.Serialise();
    ASSERT_NO_THROW(const Document again(changed)) << changed;
    const auto without_space = [](const std::string& text) {
      std::string kept;
      for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') kept += c;
      }
      return kept;
    };
    std::string rest = without_space(changed);
    const std::string inner = without_space("<zz>text \xE4\xB8\xAD</zz>");
    for (const std::string& added : {inner, std::string("<zz></zz>"), std::string("<zz/>")}) {
      for (std::size_t at = rest.find(added); at != rest.npos; at = rest.find(added)) {
        rest.erase(at, added.size());
      }
    }
    // An empty element that was opened stays open.
    std::string before = without_space(bytes);
    for (std::string* text : {&rest, &before}) {
      for (const char* name : {"a", "c", "d"}) {
        const std::string open = std::string("<") + name + "></" + name + ">";
        for (std::size_t at = text->find(open); at != text->npos; at = text->find(open)) {
          text->replace(at, open.size(), std::string("<") + name + "/>");
        }
      }
    }
    ASSERT_EQ(before, rest) << changed;
  }
}

TEST(Editor, ATextThatXmlCannotHoldIsRefused) {
  const Document document("<r/>");
  for (const std::u16string text : {u"\x0001", u"\xFFFE", u"\xD800"}) {
    Editor editor(document);
    editor.SetText(document.Root(), text);
    EXPECT_THROW(editor.Serialise(), Error);
  }
}

}  // namespace
}  // namespace sab::xml
