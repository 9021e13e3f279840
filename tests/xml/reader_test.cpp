#include <gtest/gtest.h>
#include <pthread.h>

#include <random>

#include "xml/document.h"
#include "xml/error.h"
#include "xml/oracles.h"

namespace sab::xml {
namespace {

using testing::ExpatAccepts;
using testing::LibxmlAccepts;

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

TEST(Reader, RefusesWhatOtherStrictReadersRefuse) {
  using namespace std::string_literals;
  const struct {
    const char* name;
    std::string bytes;
    const char* place;
  } rows[] = {
      {"nothing", "", "1:1"},
      {"only white space", " \n ", "2:2"},
      {"only a comment", "<!-- c -->", "1:11"},
      {"text alone", "abc", "1:1"},
      {"text before", "x<a/>", "1:1"},
      {"text behind", "<a/>x", "1:5"},
      {"two roots", "<a/><b/>", "1:5"},
      {"end tag alone", "</a>", "1:1"},
      {"CDATA as root", "<![CDATA[x]]>", "1:1"},
      {"reference behind the root", "<a/>&#32;", "1:5"},
      {"root not closed", "<a>", "1:4"},
      {"tag not closed", "<a", "1:3"},
      {"empty tag not closed", "<a/", "1:4"},
      {"wrong end tag", "<a>\n  <b>\n  </c>\n</a>", "3:3"},
      {"longer end tag", "<a></ab>", "1:4"},
      {"shorter end tag", "<ab></a>", "1:5"},
      {"crossed tags", "<a><b></a></b>", "1:7"},
      {"space before the name", "< a/>", "1:1"},
      {"space before the end name", "<a></ a>", "1:6"},
      {"name starts with a digit", "<a><1/></a>", "1:5"},
      {"name starts with a hyphen", "<-a/>", "1:1"},
      {"bad character in a name", "<a\xC3\x97/>", "1:3"},
      {"attribute without a value", "<a b/>", "1:5"},
      {"attribute without quotes", "<a b=1/>", "1:6"},
      {"attribute with mixed quotes", "<a b='1\"/>", "1:11"},
      {"attribute twice", "<a b='1' b='2'/>", "1:10"},
      {"attribute twice in a long list", "<a a='' b='' c='' d='' e='' f='' g='' h='' i='' c=''/>",
       "1:49"},
      {"attributes without space", "<a b='1'c='2'/>", "1:9"},
      {"< in an attribute", "<a b='<'/>", "1:7"},
      {"bare & in an attribute", "<a b='&'/>", "1:7"},
      {"unknown entity in an attribute", "<a b='&x;'/>", "1:7"},
      {"bare &", "<a>a & b</a>", "1:6"},
      {"unknown entity", "<a>&nbsp;</a>", "1:4"},
      {"reference without semicolon", "<a>&lt</a>", "1:4"},
      {"character reference without semicolon", "<a>&#65</a>", "1:4"},
      {"empty character reference", "<a>&#;</a>", "1:4"},
      {"empty hexadecimal reference", "<a>&#x;</a>", "1:4"},
      {"upper-case X in a reference", "<a>&#X41;</a>", "1:4"},
      {"reference to zero", "<a>&#0;</a>", "1:4"},
      {"reference to a surrogate", "<a>&#xD800;</a>", "1:4"},
      {"reference to FFFE", "<a>&#xFFFE;</a>", "1:4"},
      {"reference beyond Unicode", "<a>&#x110000;</a>", "1:4"},
      {"reference that overflows", "<a>&#99999999999999999999;</a>", "1:4"},
      {"]]> in text", "<a>]]></a>", "1:4"},
      {"control character", "<a>\x01</a>", "1:4"},
      {"zero byte", "<a>\0</a>"s, "1:4"},
      {"control character in an attribute", "<a b='\x1F'/>", "1:7"},
      {"control character in a comment", "<a><!--\x08--></a>", "1:8"},
      {"U+FFFE", "<a>\xEF\xBF\xBE</a>", "1:4"},
      {"lone continuation byte", "<a>\x80</a>", "1:4"},
      {"overlong sequence", "<a>\xC0\xAF</a>", "1:4"},
      {"overlong three bytes", "<a>\xE0\x80\xAF</a>", "1:4"},
      {"encoded surrogate", "<a>\xED\xA0\x80</a>", "1:4"},
      {"beyond Unicode", "<a>\xF4\x90\x80\x80</a>", "1:4"},
      {"cut sequence", "<a>\xE4\xB8</a>", "1:4"},
      {"Latin-1 without a declaration", "<a>\n\xE4\xB8\xAD\xE9</a>", "2:2"},
      {"-- in a comment", "<a><!-- a -- b --></a>", "1:11"},
      {"comment ends with --->", "<a><!-- a ---></a>", "1:11"},
      {"comment not closed", "<a><!-- a</a>", "1:4"},
      {"CDATA not closed", "<a><![CDATA[ </a>", "1:4"},
      {"instruction not closed", "<a><?p </a>", "1:4"},
      {"instruction without a target", "<a><? p?></a>", "1:6"},
      {"declaration inside", "<a><?xml version='1.0'?></a>", "1:4"},
      {"declaration behind a space", " <?xml version='1.0'?><a/>", "1:2"},
      {"instruction named XML", "<?XML version='1.0'?><a/>", "1:1"},
      {"declaration without a version", "<?xml encoding='UTF-8'?><a/>", "1:7"},
      {"declaration in the wrong order",
       "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>", "1:38"},
      {"declaration with a wrong standalone", "<?xml version='1.0' standalone='maybe'?><a/>",
       "1:33"},
      {"declaration without a space", "<?xml version='1.0'encoding='UTF-8'?><a/>", "1:20"},
      {"prefix that is not declared", "<p:a/>", "1:2"},
      {"attribute prefix that is not declared", "<a p:b=''/>", "1:4"},
      {"prefix out of scope", "<a><b xmlns:p='u'/><p:c/></a>", "1:21"},
      {"two colons", "<a xmlns:p='u'><p:b:c/></a>", "1:17"},
      {"one attribute by two prefixes", "<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>", "1:35"},
      {"prefix undeclared", "<a xmlns:p=''/>", "1:4"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.place, Refusal(row.bytes));
    EXPECT_FALSE(ExpatAccepts(row.bytes));
    EXPECT_FALSE(LibxmlAccepts(row.bytes));
  }
  // These are well-formed, and refused all the same: nothing may be declared, nothing fetched.
  EXPECT_EQ("1:1", Refusal("<!DOCTYPE a><a/>"));
  EXPECT_EQ("1:1", Refusal("<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>"));
}

TEST(Reader, AcceptsWhatOtherStrictReadersAccept) {
  const std::string rows[] = {
      "<a/>",
      "<a></a>",
      "<a ></a >",
      "<a\n/>",
      "\xEF\xBB\xBF<a/>",
      "<?xml version='1.0'?><a/>",
      "<?xml version=\"1.0\" encoding=\"utf-8\" standalone='no' ?>\n<!-- c --><?p?><a/><?q x?>\n",
      "<a>&lt;&gt;&amp;&quot;&apos;&#65;&#x4e2d;</a>",
      "<a>]] ></a>",
      "<a><![CDATA[]]]]></a>",
      "<a b=\"'\" c='\"' d='&lt;>'/>",
      "<\xE4\xB8\xAD\xE6\x96\x87/>",
      "<a.b-c_d/>",
      "<a><!----><!-- - --></a>",
      "<a xmlns='u'><b xmlns=''/></a>",
      "<p:a xmlns:p='u' p:b=''/>",
      "<a xml:lang='zh'/>",
      "<a b='&#10;'/>",
      "<a>\r\n</a>",
      "<a>\xF0\x9F\x94\xA7</a>",
      "<a>\x7F\xC2\x80</a>"};
  for (const std::string& bytes : rows) {
    EXPECT_EQ("", Refusal(bytes)) << bytes;
    EXPECT_TRUE(ExpatAccepts(bytes)) << bytes;
    EXPECT_TRUE(LibxmlAccepts(bytes)) << bytes;
  }
}

constexpr char kSample[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!-- c --><UI xmlns:p='u'>\n"
    "  <Bar a=\"1\" b='&#x4e2d;'>text &amp; more<b> inner </b> tail</Bar>\n"
    "  <p:Q>\xE4\xB8\xAD\xE6\x96\x87 ]]&gt; x</p:Q><E/><![CDATA[ <raw> & ]]><?pi data?>\n"
    "  <Deep><Deep><Deep>&lt;</Deep></Deep></Deep>\n</UI>\n";

// Random damage to a sample: we and the two others must agree on whether it is a document, and, if
// it is, on every element's name and text.
TEST(Reader, AgreesWithOthersOnDamagedDocuments) {
  std::mt19937 random(4711);
  const std::string pieces[] = {"<",     ">",    "/",        "&",         ";",   "'",    "\"",
                                "=",     "]]>",  "--",       "<!--",      "<a>", "</a>", "<b/>",
                                "&amp;", "&#0;", "xmlns=''", "p:",        ":",   "\xE4", "\x01",
                                "?>",    "<?x ", " ",        "<![CDATA[", "UI",  "\r"};
  const auto pick = [&random](std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
  };
  int accepted = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string bytes = kSample;
    for (std::size_t damage = pick(3) + 1; damage > 0; --damage) {
      const std::size_t at = pick(bytes.size());
      switch (pick(4)) {
        case 0:
          bytes.erase(at, pick(6) + 1);
          break;
        case 1:
          bytes.insert(at, pieces[pick(std::size(pieces))]);
          break;
        case 2:
          bytes[at] = bytes[pick(bytes.size())];
          break;
        default:
          bytes.insert(at, bytes.substr(pick(bytes.size()), pick(12)));
      }
    }
    // A declared encoding other than UTF-8 is another matter.
    if (bytes.find("encoding=\"UTF-8\"") == std::string::npos) continue;
    const bool expected = ExpatAccepts(bytes);
    if (expected != LibxmlAccepts(bytes)) continue;  // where they differ there is no oracle
    ASSERT_EQ(expected, Refusal(bytes).empty()) << bytes << "\nrefused at " << Refusal(bytes);
    if (!expected) continue;
    ++accepted;
    const Document document(bytes);
    std::vector<std::string> names;
    for (NodeIndex i = 1; i < document.NodeCount(); ++i) {
      if (document.IsElement(i)) names.emplace_back(document.LocalNameOf(i));
    }
    const std::vector<std::string> texts = testing::LibxmlTexts(bytes);
    ASSERT_EQ(texts.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
      ASSERT_EQ(texts[i].substr(0, texts[i].find('=')), names[i]) << bytes;
    }
  }
  EXPECT_GT(accepted, 1000);  // else nothing was compared
}

// What a host's thread has for all this is little stack.
TEST(Reader, NestingNeedsNoStack) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 256 * 1024));
  pthread_t thread;
  const auto body = [](void*) -> void* {
    constexpr int kDepth = 1000000;
    std::string bytes;
    for (int i = 0; i < kDepth; ++i) bytes += "<a>";
    bytes += "x";
    for (int i = 0; i < kDepth; ++i) bytes += "</a>";
    const Document document(std::move(bytes));
    std::u16string text;
    document.AppendText(document.Root(), text);
    EXPECT_EQ(u"x", text);
    return nullptr;
  };
  ASSERT_EQ(0, pthread_create(&thread, &attributes, body, nullptr));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace
}  // namespace sab::xml
