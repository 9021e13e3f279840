// What configuration documents do on every platform.

#include "common/config_document.h"

#include <gtest/gtest.h>

#include "config/document_fixture.h"

namespace sab {
namespace {

using ConfigDocumentTest = DocumentTest;

TEST_F(ConfigDocumentTest, TextOfAnElement) {
  const struct {
    const char* content;  // of the element A, with its tags
    const char* text;
    const char* of_children = nullptr;  // those that are not empty, each with a bar, if asked for
  } rows[] = {
      {"<A/>", "", ""},
      {"<A>  \t\n </A>", "", ""},
      {"<A> path\\to.xml </A>", "path\\to.xml", "path\\to.xml|"},
      {"<A>\r\n a\r\n  b\t\r\n</A>", "a\n  b"},
      {"<A>  x <b> y </b>  z </A>", "x  y   z", "x|y|z|"},
      {"<A> <![CDATA[ cd ]]> </A>", " cd "},
      {"<A> x<![CDATA[ y ]]>z </A>", "x y z", "x| y |z|"},
      {"<A xml:space=\"preserve\"> p </A>", " p "},
      {"<A> <!-- q -->z <?target  data ?></A>", "z", " q |z|data |"},
      {"<A>&#32; a&#9;</A>", "a"},
      {"<A>&#160;a&#13;</A>", "\u00A0a"},
      {"<A>a&lt;&amp;&gt;&quot;&apos;&#x4E2D;&#x1F600;</A>", "a<&>\"'\u4E2D\U0001F600"},
      {"<A>a<b> x <c>y</c></b> c </A>", "a x y c", "a|x y|c|"},
      // White space alone between two nodes counts as one blank when there is text after it.
      {"<A>\n  <b>x</b>\n  <c>y</c>\n</A>", "x y"},
      {"<A>a <b>x</b> <c> </c> <d>y</d> </A>", "a x y"},
      {"<A>y<b> <c>x</c> </b>y</A>", "yx y"},
      {"<A>a<b> <!-- q --></b>c</A>", "a c"},
      {"<A>a<b/> <c></c><d>z</d></A>", "a z"},
      {"<A><b/> <c/> x </A>", "x"},
      {"<A><b>x</b><!-- q -->  <?p q?>y</A>", "x y"},
      {"<A><b>x</b> <![CDATA[y]]></A>", "x y"},
      {"<A><b/> <![CDATA[y]]> </A>", "y"},
      {"<A><![CDATA[a\r\nb\rc]]></A>", "a\nb\nc"},
      {"<A xml:space='preserve'><b>x</b>  <c>y</c> </A>", "x  y "},
      {"<A xml:space='preserve'>  <b xml:space='default'> q </b> </A>", "   q  "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.content);
    Load(std::string("<r>") + row.content + "</r>");
    EXPECT_EQ(TextAt("/r/A"), row.text);
    if (!row.of_children) continue;
    std::string texts;
    document_.Select("/r/A").ForEachChildText(scratch_, [&](TextView text) {
      if (!text.empty()) texts += ToUtf8(text) + '|';
    });
    EXPECT_EQ(texts, row.of_children);
  }
}

TEST_F(ConfigDocumentTest, SelectingGivesTheFirstElementInDocumentOrder) {
  Load(
      "<r xmlns:q='urn:q'><!-- c --><A k='v'>1</A><A><B>2</B><C>4</C></A><q:A>3</q:A>"
      "<D xmlns='urn:d'><B>5</B></D><E-mail.x_1>6</E-mail.x_1></r>");
  const std::pair<const char*, std::vector<std::string_view>> rows[] = {
      {"1",
       {"/r/A", "r/A", " /r / A ", "/r/A[@k='v']", "/r/A/B | /r/A", "/child::r/child::A",
        "//A[.='x:y'] | r/A[1]"}},
      {"2", {"/r/A/B", "//B", "/r/A[2]/B", "/r/A[1]/following-sibling::A/B"}},
      {"3", {"/r/*[local-name()='A'][3]"}},
      {"4", {"r/A/C", "/r/A[last()]/C", "//D/B | //C"}},
      {"5", {"//*[local-name()='D']/*"}},
      {"6", {"/r/E-mail.x_1"}},
      {"<none>", {"/r/a", "/R", "/r/D", "/r/D/B", "//D", "/r/A/@k", "/", "/r/A/B/C"}},
  };
  for (const auto& [text, paths] : rows) {
    for (const std::string_view path : paths) EXPECT_EQ(TextAt(path), text) << path;
  }
}

TEST_F(ConfigDocumentTest, MalformedPathsFailAndAreNamed) {
  folder_.Write("t.xml", "<r><A/></r>");
  const char* const paths[] = {"/a[[",  "",          "/r/",       "//",       "/r//",
                               "/r/A[", "1+1",       "count(/r)", "true()",   "string(/r)",
                               "/x:r",  "nosuch(1)", "$v",        "/r/A[1+]", "//x:*"};
  for (const char* file : {"t.xml", "none.xml"}) {
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
  const std::string_view keys[] = {"A",   "B", "C",   "D", "S/T", "S/U",
                                   "G/D", "r", "r/G", "G", "None"};
  for (const std::string node_path : {"/r/G", "r/G", "/r/G[3]", "/r/G/", "//G", "/r/*", "/r/H",
                                      "/r/G | /r/H", "/r", "", "/", "/none"}) {
    const std::vector<ConfigElement> found = document_.SelectAll(FromUtf8(node_path)).First(keys);
    for (std::size_t i = 0; i < std::size(keys); ++i) {
      const std::string joined = node_path + "/" + std::string(keys[i]);
      EXPECT_EQ(TextOf(found[i]), TextAt(joined)) << joined;
    }
  }
  EXPECT_EQ(ResultOf([&] { document_.SelectAll(OLESTR("/r/G[")).First(keys); }), E_FAIL);
}

TEST_F(ConfigDocumentTest, ChildrenAreElementsWithLocalNames) {
  Load(
      "<x:r xmlns:x='urn:x'>text<x:A/><!-- c --><B a='1' x:a='2'/><?p?><![CDATA[c]]><A/>"
      "<C><D/></C></x:r>");
  const ConfigElement root = document_.Select("/*");
  EXPECT_TRUE(root && root.Is("r") && root.HasNodeName("x:r"));
  std::string names;
  for (const ConfigElement child : root.Children()) {
    names += ToUtf8(child.ReadLocalName(scratch_));
    names += child.Is("A") ? '+' : '-';
    names += child.HasNodeName("A") ? '+' : '-';
    names += child.Children().begin() == nullptr ? " " : "{} ";
    EXPECT_FALSE(child.Is("a") || child.Is("AB") || child.Is(""));
  }
  EXPECT_EQ(names, "A+- B-- A++ C--{} ");
}

TEST_F(ConfigDocumentTest, WhatCannotBeLoadedLeavesAnEmptyDocument) {
  const auto load = [this](const Text& name, bool is_missing) -> const LoadFailure& {
    Load("<r><A>x</A></r>");
    EXPECT_FALSE(document_.Load(name));
    EXPECT_EQ(TextAt("//A"), "<none>");
    EXPECT_EQ(document_.Failure().is_missing, is_missing);
    return document_.Failure();
  };
  folder_.Write("bad.xml", "<r>\n<A>x</A>\n");
  const LoadFailure& failure = load(folder_.Name("bad.xml"), false);
  EXPECT_NE(failure.Describe().find("bad.xml:3:"), std::string::npos) << failure.Describe();
  for (const Text& name : {folder_.Name("none.xml"), folder_.Name("no/none.xml"), Text()})
    load(name, true);
  EXPECT_FALSE(document_.Load(folder_.Name("")));
  EXPECT_FALSE(document_.Load(OLESTR("http://127.0.0.1:9/t.xml")));
  EXPECT_NE(document_.Failure().reason.find("network"), std::string::npos);
}

}  // namespace
}  // namespace sab
