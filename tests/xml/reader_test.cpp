#include <gtest/gtest.h>

#include "xml/document.h"
#include "xml/error.h"
#include "xml/oracles.h"

namespace sab::xml {
namespace {

// "" for a document that is read, else "line:column".
std::string Refusal(const std::string& bytes) {
  try {
    const Document document(bytes);
    return {};
  } catch (const Error& error) {
    EXPECT_STRNE("", error.what());
    return std::to_string(error.Line()) + ":" + std::to_string(error.Column());
  }
}

// A tag with more attributes, each of a namespace of its own, than are searched one by one.
std::string Wide(const std::string& start, const std::string& more, const std::string& end) {
  std::string tag = start;
  for (int i = 5; i < 15; ++i) {
    const std::string prefix = "p" + std::to_string(i);
    tag += "xmlns:" + prefix + "='u" + prefix.substr(1) + "' " + prefix + ":b='' ";
  }
  return tag + more + end;
}

TEST(Reader, JudgesAsOtherStrictReadersAndNamesThePlace) {
  using namespace std::string_literals;
  const struct {
    const char* place;  // of the fault, "" where there is none
    std::vector<std::string> documents;
  } rows[] = {
      {"", {"<a/>", "<a></a>", "<a ></a >", "<a\n/>", "<a.b-c_d/>", "\xEF\xBB\xBF<a/>"}},
      {"", {"<a>]] ></a>", "<a>\r\n</a>", "<a>\x7F\xC2\x80</a>", "<a>\xF0\x9F\x94\xA7</a>"}},
      {"", {"<a d='&lt;>'/>", "<a b='&#10;'/>", "<a b=\"'\" c='\"'/>", "<a xml:lang='zh'/>"}},
      {"", {"<p:a xmlns:p='u' p:b=''/>", "<a xmlns='u'><b xmlns=''/></a>"}},
      {"", {"<a xmlns:xml='http://www.w3.org/XML/1998/namespac&#101;' xml:b=''/>"}},
      {"", {"<?xml version='1.1'?><a/>", "<?xml version='1.10'?><a/>", Wide("<p5:a ", "", "/>")}},
      {"", {"<a>&lt;&gt;&amp;&quot;&apos;&#65;&#x4e2d;</a>", "<\xE4\xB8\xAD\xE6\x96\x87/>"}},
      {"", {"<a><![CDATA[]]]]></a>", "<a><!----><!-- - --></a>", "<!-- c --><?p?><a/><?q x?>\n"}},
      {"", {"<?xml version=\"1.0\" encoding=\"utf-8\" standalone='no' ?>\n<a/>"}},
      // No document element, or one that is never closed.
      {"1:1", {"", "abc", "x<a/>", "</a>", "<![CDATA[x]]>", "< a/>", "<-a/>"}},
      {"1:3", {"<a"}},
      {"1:4", {"<a/", "<a>", "<a></ab>"}},
      {"1:5", {"<a/>x", "<a/><b/>", "<a/>&#32;", "<ab></a>"}},
      {"1:6", {"<a></ a>"}},
      {"1:7", {"<a><b></a></b>"}},
      {"1:11", {"<!-- c -->"}},
      {"2:2", {" \n "}},
      {"3:3", {"<a>\n  <b>\n  </c>\n</a>"}},
      // Names and attributes.
      {"1:3", {"<a\xC3\x97/>"}},
      {"1:5", {"<a><1/></a>", "<a b/>"}},
      {"1:6", {"<a b=1/>"}},
      {"1:7", {"<a b='<'/>", "<a b='&'/>", "<a b='&x;'/>", "<a b='\x1F'/>"}},
      {"1:9", {"<a b='1'c='2'/>"}},
      {"1:10", {"<a b='1' b='2'/>"}},
      {"1:11", {"<a b='1\"/>"}},
      {"1:49", {"<a a='' b='' c='' d='' e='' f='' g='' h='' i='' c=''/>"}},
      // References and characters.
      {"1:4", {"<a>&nbsp;</a>", "<a>&lt</a>", "<a>&#65</a>", "<a>&#;</a>", "<a>&#x;</a>"}},
      {"1:4", {"<a>&#X41;</a>", "<a>&#0;</a>", "<a>&#xD800;</a>", "<a>&#xFFFE;</a>"}},
      {"1:4", {"<a>&#x110000;</a>", "<a>&#99999999999999999999;</a>", "<a>&#4294967361;</a>"}},
      {"1:4", {"<a>]]></a>", "<a>\x01</a>", "<a>\0</a>"s, "<a>\xEF\xBF\xBE</a>", "<a>\x80</a>"}},
      {"1:4", {"<a>\xC0\xAF</a>", "<a>\xE0\x80\xAF</a>", "<a>\xED\xA0\x80</a>"}},
      {"1:4", {"<a>\xF4\x90\x80\x80</a>", "<a>\xE4\xB8</a>"}},
      {"1:6", {"<a>a & b</a>"}},
      {"1:8", {"<a><!--\x08--></a>"}},
      {"2:2", {"<a>\n\xE4\xB8\xAD\xE9</a>"}},
      // Comments, CDATA sections, instructions, the declaration.
      {"1:1", {"<?XML version='1.0'?><a/>"}},
      {"1:2", {" <?xml version='1.0'?><a/>"}},
      {"1:4", {"<a><!-- a</a>", "<a><![CDATA[ </a>", "<a><?p </a>", "<a><?p:q?></a>"}},
      {"1:4", {"<a><?xml version='1.0'?></a>"}},
      {"1:6", {"<a><? p?></a>"}},
      {"1:7", {"<?xml encoding='UTF-8'?><a/>"}},
      {"1:11", {"<a><!-- a -- b --></a>", "<a><!-- a ---></a>"}},
      {"1:20", {"<?xml version='1.0'encoding='UTF-8'?><a/>"}},
      {"1:33", {"<?xml version='1.0' standalone='maybe'?><a/>"}},
      {"1:38", {"<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>"}},
      // Namespaces.
      {"1:2", {"<p:a/>", "<:a/>"}},
      {"1:4",
       {"<a p:b=''/>", "<a xmlns:p=''/>", "<a xmlns:xmlns='u'/>",
        "<a xmlns:p='http://www.w3.org/2000/xmlns/'/>",
        "<a xmlns='http://www.w3.org/2000/xmlns&#x2F;'/>",
        "<a xmlns:p='http://www.w3.org/XML/1998/namespac&#101;'/>"}},
      {"1:17", {"<a xmlns:p='u'><p:b:c/></a>"}},
      {"1:21", {"<a><b xmlns:p='u'/><p:c/></a>"}},
      {"1:35", {"<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>"}},
      {"1:52", {"<a xmlns:p='u\t&amp;' xmlns:q='&#117; &#38;' p:b='' q:b=''/>"}},
      {"1:251", {Wide("<a xmlns:q='u' ", "p5:b=''", "/>")}},
      {"1:253", {Wide("<a xmlns:q='u10' ", "q:b=''", "/>")}},
      // A prefix is hidden by an element, and means what it did after it.
      {"1:300",
       {Wide("<a xmlns:q='u10' ", "><b xmlns:p10='v' p10:c='' q:c=''/",
             "><c p10:b='' q:b=''/></a>")}},
  };
  for (const auto& [place, documents] : rows) {
    const bool is_good = place[0] == '\0';
    for (const std::string& bytes : documents) {
      EXPECT_EQ(place, Refusal(bytes)) << bytes;
      EXPECT_EQ(is_good, testing::ExpatAccepts(bytes)) << bytes;
      EXPECT_EQ(is_good, !testing::LibxmlElements(bytes).empty()) << bytes;
    }
  }
  EXPECT_EQ("1:2", Refusal("<" + std::string(65536, 'a') + "/>"));
  for (const char* version : {"1.", "1.x", "1.0.", "2.0", "11", ""})
    EXPECT_EQ("1:16", Refusal("<?xml version='" + std::string(version) + "'?><a/>")) << version;
  // These are well-formed, and refused all the same: nothing may be declared, nothing fetched.
  EXPECT_EQ("1:1", Refusal("<!DOCTYPE a><a/>"));
  EXPECT_EQ("1:1", Refusal("<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>"));
}

// The reader compares tags with earlier ones.
TEST(Reader, WhatLooksLikeAnEarlierTagIsReadAsWhatItIs) {
  const struct {
    const char* bytes;
    const char* nodes;  // names, # for text, ! for a comment
  } rows[] = {
      {"<r>\n <a>1</a>\n <a>2</a>\n <a>3</a></r>", "raaa"},
      {"<r><c/>\n <a>1</a><b xml:space='preserve'><c/>\n <a>1</a></b></r>", "rcabc#a"},
      {"<r><b xml:space='preser&#118;e'><c/>\n <a>1</a></b></r>", "rbc#a"},
      {"<r><a/>-><a/>-><a/></r>", "ra#a#a"},
      {"<r>  <!-- --><a/>--><a/>--><a/></r>", "r!a#a#a"},
      {"<r><a/><ab/><a/><abc/><a /><b/><a/></r>", "raabaabcaba"},
      {"<r><a>1</a><b/><a>2</a><b c='1'/><a>3</a><b>4</b></r>", "rababab"},
      {"<r><a><a><a>1</a></a></a><a>2<a>3</a></a></r>", "raaaa#a"},
  };
  for (const auto& row : rows) {
    const Document document(row.bytes);
    std::string nodes;
    for (NodeIndex i = 1; i < document.NodeCount(); ++i) {
      nodes += document.IsElement(i)                      ? std::string(document.NameOf(i))
               : document.TypeOf(i) == NodeType::kComment ? "!"
                                                          : "#";
    }
    EXPECT_EQ(row.nodes, nodes) << row.bytes;
  }
}

}  // namespace
}  // namespace sab::xml
