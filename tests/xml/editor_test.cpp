#include "xml/edit.h"

#include <gtest/gtest.h>

#include <sstream>

#include "xml/error.h"
#include "xml/path.h"

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
