// What both DOMs must agree on. Where Wine's MSXML is known to differ from the real one, the test
// says so.

#include "common/config_document.h"

#include <gtest/gtest.h>

#include "config/document_fixture.h"
#include "config/wine.h"

namespace sab {
namespace {

using ConfigDocumentTest = DocumentTest;

TEST_F(ConfigDocumentTest, TextOfAnElement) {
  const struct {
    const char* content;  // of the element A, with its tags
    const char* text;
  } rows[] = {
      {"<A/>", ""},
      {"<A> 42abc </A>", "42abc"},
      {"<A>\r\n a\r\n  b\t\r\n</A>", "a\n  b"},
      {"<A>  \t\n </A>", ""},
      {"<A>  x <b> y </b>  z </A>", "x  y   z"},
      {"<A><![CDATA[ cd ]]></A>", " cd "},
      {"<A> <![CDATA[ cd ]]> </A>", " cd "},
      {"<A> x<![CDATA[ y ]]>z </A>", "x y z"},
      {"<A xml:space=\"preserve\"> p </A>", " p "},
      {"<A>a<!-- q --> b</A>", "a b"},
      {"<A> <!-- q --> z <?target  data ?></A>", "z"},
      {"<A>&#32; a&#9;</A>", "a"},
      {"<A>&#160;a&#13;</A>", "\u00A0a"},
      {"<A>a&lt;&amp;&gt;&quot;&apos;&#x4E2D;&#x1F600;</A>", "a<&>\"'\u4E2D\U0001F600"},
      {"<A>a]]&gt;b</A>", "a]]>b"},
      {"<A><b>x</b><c>y</c></A>", "xy"},
      // White space alone between two nodes counts as one blank when there is text behind it.
      {"<A>\n  <b>x</b>\n  <c>y</c>\n</A>", "x y"},
      {"<A>a <b>x</b> <c> </c> <d>y</d> </A>", "a x y"},
      {"<A>y<b> <c>x</c> </b>y</A>", "yx y"},
      {"<A>a<b> </b>c</A>", "a c"},
      {"<A>a<b> <!-- q --></b>c</A>", "a c"},
      {"<A>a<b/> <c></c><d>z</d></A>", "a z"},
      {"<A><b/> <c/> x </A>", "x"},
      {"<A><b>x</b><!-- q -->  <?p q?>y</A>", "x y"},
      {"<A><b>x</b> <![CDATA[y]]></A>", "x y"},
      {"<A><b/> <![CDATA[y]]> </A>", "y"},
      {"<A><![CDATA[a\r\nb\rc]]></A>", "a\nb\nc"},
      {"<A xml:space='preserve'>\r\n a</A>", "\n a"},
      {"<A xml:space='preserve'><b>x</b>  <c>y</c> </A>", "x  y "},
      {"<A xml:space='preserve'>  <b xml:space='default'> q </b> </A>", "   q  "},
  };
  for (const auto& row : rows) {
    Load(std::string("<r>") + row.content + "</r>");
    EXPECT_EQ(TextAt("/r/A"), row.text) << row.content;
  }
}

TEST_F(ConfigDocumentTest, SelectingGivesTheFirstElementInDocumentOrder) {
  Load(
      "<r xmlns:q='urn:q'><!-- c --><A k='v'>1</A><A><B>2</B><C>4</C></A><q:A>3</q:A>"
      "<D xmlns='urn:d'><B>5</B></D><E-mail.x_1>6</E-mail.x_1></r>");
  const struct {
    const char* path;
    const char* text;
  } rows[] = {
      {"/r/A", "1"},           {"r/A", "1"},          {" /r / A ", "1"},
      {"/r/A/B", "2"},         {"r/A/C", "4"},        {"//B", "2"},
      {"/r/a", "<none>"},      {"/R", "<none>"},      {"/r/A/B/C", "<none>"},
      {"/r/D", "<none>"},      {"/r/D/B", "<none>"},  {"//D", "<none>"},
      {"/r/A/@k", "<none>"},   {"/", "<none>"},       {"/r/A[2]/B", "2"},
      {"/r/A[last()]/C", "4"}, {"/r/A[@k='v']", "1"}, {"/r/A/B | /r/A", "1"},
      {"/r/E-mail.x_1", "6"},  {"//D/B | //C", "4"},  {"/child::r/child::A", "1"},
  };
  for (const auto& row : rows) EXPECT_EQ(TextAt(row.path), row.text) << row.path;
  EXPECT_EQ(TextAt("/r/*[local-name()='A'][3]"), "3");
  EXPECT_EQ(TextAt("//*[local-name()='D']/*"), "5");
  EXPECT_EQ(TextAt("//A[.='x:y'] | r/A[1]"), "1");
  EXPECT_EQ(TextAt("/r/A[1]/following-sibling::A/B"), "2");
}

TEST_F(ConfigDocumentTest, MalformedPathsFailAndAreNamed) {
  folder_.Write("t.xml", "<r><A/></r>");
  const char* const files[] = {"t.xml", "none.xml"};
  const char* const paths[] = {"/a[[",  "",          "/r/",       "//",       "/r//",
                               "/r/A[", "1+1",       "count(/r)", "true()",   "string(/r)",
                               "/x:r",  "nosuch(1)", "$v",        "/r/A[1+]", "//x:*"};
  for (const char* file : files) {
    document_.Load(folder_.Name(file));
    for (const char* path : paths) {
      std::string message;
      EXPECT_EQ(ResultOf([&] { document_.Select(std::string_view(path)); }, &message), E_FAIL)
          << file << ' ' << path;
      EXPECT_NE(message.find('"' + std::string(path) + '"'), std::string::npos) << message;
      EXPECT_NE(message.find(file), std::string::npos) << message;
    }
  }
}

// Reading a key under prepared nodes must give what selecting the joined path gives.
TEST_F(ConfigDocumentTest, PreparedNodesEqualTheJoinedPath) {
  Load(
      "<r><G><A>1</A><S><T>t1</T></S></G><G><A>2</A><B>3</B><S><U>u2</U></S></G>"
      "<G id='g3'><B>4</B><C>5</C></G><H><G><D>6</D></G></H></r>");
  const char* const node_paths[] = {"/r/G", "r/G",         "/r/G[3]", "/r/G/", "//G", "/r/*",
                                    "/r/H", "/r/G | /r/H", "/r",      "",      "/",   "/none"};
  const std::string_view keys[] = {"A",   "B", "C",   "D", "S/T", "S/U",
                                   "G/D", "r", "r/G", "G", "None"};
  for (const char* node_path : node_paths) {
    const std::vector<ConfigElement> found = document_.SelectAll(FromUtf8(node_path)).First(keys);
    for (std::size_t i = 0; i < std::size(keys); ++i) {
      const std::string joined = std::string(node_path) + "/" + std::string(keys[i]);
      EXPECT_EQ(TextOf(found[i]), TextAt(joined)) << joined;
    }
  }
  EXPECT_EQ(TextOf(document_.SelectAll(OLESTR("/r/G")).First(keys)[2]), "5");
  EXPECT_EQ(ResultOf([&] { document_.SelectAll(OLESTR("/r/G[")).First(keys); }), E_FAIL);
}

TEST_F(ConfigDocumentTest, ChildrenAreElementsWithLocalNames) {
  Load(
      "<x:r xmlns:x='urn:x'>text<x:A/><!-- c --><B a='1' x:a='2'/><?p?><![CDATA[c]]><A/>"
      "<C><D/></C></x:r>");
  const ConfigElement root = document_.Select("/*");
  ASSERT_TRUE(root);
  EXPECT_TRUE(root.Is("r"));
  EXPECT_TRUE(root.HasNodeName("x:r"));
  std::string names;
  for (const ConfigElement child : root.Children()) {
    names += ToUtf8(child.ReadLocalName(scratch_));
    names += child.Is("A") ? '+' : '-';
    names += child.HasNodeName("A") ? "+ " : "- ";
    EXPECT_FALSE(child.Is("a") || child.Is("AB") || child.Is(""));
  }
  EXPECT_EQ(names, "A+- B-- A++ C-- ");

  const ConfigElement b = document_.Select("//B");
  EXPECT_FALSE(b.Children().begin() != b.Children().end());
  EXPECT_FALSE(ConfigElement());
}

TEST_F(ConfigDocumentTest, TextsOfChildNodes) {
  const struct {
    const char* content;
    const char* texts;  // those that are not empty, joined by bars
  } rows[] = {
      {"", ""},
      {"  ", ""},
      {" path\\to.xml ", "path\\to.xml|"},
      {"a<b> x <c>y</c></b> c ", "a|x y|c|"},
      {"a&amp;b", "a&b|"},
      {"<![CDATA[ x ]]>y", " x |y|"},
      {"<!-- c -->x<?target data?>", " c |x|data|"},
  };
  for (const auto& row : rows) {
    Load(std::string("<r><M>") + row.content + "</M></r>");
    std::string texts;
    document_.Select("/r/M").ForEachChildText(scratch_, [&](TextView text) {
      if (!text.empty()) texts += ToUtf8(text) + '|';
    });
    EXPECT_EQ(texts, row.texts) << row.content;
  }
}

TEST_F(ConfigDocumentTest, ChineseFilesAreReadAndDocumentTypesRefused) {
  if (RunsUnderWine()) GTEST_SKIP() << "Wine's MSXML knows no Chinese encodings and reads a DTD";
  const struct {
    const char* encoding;
    const char* added;  // U+6587 U+1F600
  } rows[] = {{"gbk", "\xCE\xC4&#128512;"}, {"GB18030", "\xCE\xC4\x94\x39\xFC\x36"}};
  for (const auto& row : rows) {
    Load(std::string("<?xml version=\"1.0\" encoding=\"") + row.encoding +
         "\"?><r><A>\xD6\xD0\xCE\xC4</A></r>");
    EXPECT_EQ(TextAt("/r/A"), "\u4E2D\u6587") << row.encoding;
    document_.Select("/r").Append("B", FromUtf8("\u6587\U0001F600"));
    EXPECT_TRUE(Saved().ends_with(std::string("<B>") + row.added + "</B></r>")) << row.encoding;
  }
  for (const char* xml : {"<!DOCTYPE r><r/>", "<!DOCTYPE r [<!ENTITY e 'v'>]><r>&e;</r>",
                          "<!DOCTYPE r SYSTEM 'file:///etc/hostname'><r/>"}) {
    folder_.Write("t.xml", xml);
    EXPECT_FALSE(document_.Load(name_)) << xml;
  }
}

TEST_F(ConfigDocumentTest, WhatCannotBeLoadedLeavesAnEmptyDocument) {
  const struct {
    const char* xml;
    unsigned line;  // of the fault
  } rows[] = {
      {"", 1},         {"<r><A>x</r>", 1},      {"<r>\n<A>x</A>\n", 3}, {"<r/><r/>", 1},
      {"<r a=1/>", 1}, {"<r>\n &none;</r>", 2}, {"<r>\xFF</r>", 1},     {"plain text", 1},
  };
  Load("<r><A>x</A></r>");
  for (const auto& row : rows) {
    folder_.Write("bad.xml", row.xml);
    EXPECT_FALSE(document_.Load(folder_.Name("bad.xml"))) << row.xml;
    EXPECT_EQ(TextAt("/r"), "<none>") << row.xml;
    EXPECT_EQ(TextAt("//A"), "<none>") << row.xml;
    const LoadFailure& failure = document_.Failure();
    EXPECT_FALSE(failure.is_missing);
    EXPECT_FALSE(failure.reason.empty()) << row.xml;
    // Wine's MSXML does not tell the place.
    if (failure.position.line != 0) {
      EXPECT_EQ(failure.position.line, row.line) << failure.Describe();
    }
    EXPECT_NE(failure.Describe().find("bad.xml"), std::string::npos);
  }
  for (const Text& name : {folder_.Name("none.xml"), folder_.Name("no/none.xml"), Text()}) {
    EXPECT_FALSE(document_.Load(name));
    EXPECT_TRUE(document_.Failure().is_missing);
    EXPECT_EQ(TextAt("/r"), "<none>");
  }
  EXPECT_FALSE(document_.Load(folder_.Name("")));
  EXPECT_FALSE(document_.Load(OLESTR("http://127.0.0.1:9/t.xml")));
  EXPECT_NE(document_.Failure().reason.find("network"), std::string::npos);
}

}  // namespace
}  // namespace sab
