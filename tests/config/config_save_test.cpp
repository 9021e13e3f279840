// Edits and saving: every byte outside the edits stays, or the file stays as it was.

#include <gtest/gtest.h>

#include <functional>

#include "config/document_fixture.h"

namespace sab {
namespace {

using ConfigSaveTest = DocumentTest;

// What is done shows in the file and not in the loaded document.
TEST_F(ConfigSaveTest, EditsChangeTheirPlaceInTheFileAndNothingElse) {
  const auto append = [this] {
    document_.Select("//*[local-name()='G']").Append("N", FromUtf8("\U0001F600<b"));
    EXPECT_EQ(TextAt("//N"), "<none>");
  };
  const auto append_list = [this] {
    AppendedElement list = document_.Select("/r/G").Append("List");
    list.Append("Item", OLESTR("1"));
    list.Append("Item", OLESTR("2"));
  };
  const auto change = [this] {
    document_.Select("/r/A").SetText(OLESTR("x & y\r"));
    document_.Select("/r/B").SetText(OLESTR("2"));
    document_.Select("/r/C").Remove();
    document_.Select("/r/D").Remove();
  };
  // A path looks for elements in no namespace, so these are what is added.
  constexpr char kAdded[] = "<N>\U0001F600&lt;b</N>";
  constexpr char kAddedWithout[] = "<N xmlns=\"\">\U0001F600&lt;b</N>";
  const struct {
    std::string before;
    const char* removed;
    const char* added;  // in place of what is removed
    std::string after;
    std::function<void()> act;
  } rows[] = {
      {"\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!-- \u4E2D -->\r\n<r>\r\n\t<G a = 'x' >\r\n"
       "\t\t<A>&#49;</A>",
       "", "\r\n\t\t<List>\r\n\t\t\t<Item>1</Item>\r\n\t\t\t<Item>2</Item>\r\n\t\t</List>",
       "\r\n\t</G >\r\n\r\n</r>\r\n<!-- end -->", append_list},
      {"<r>\n  <A>", "1<!-- old --></A>\n  <B/>\n  <C>3</C>\n  <D>4</D>",
       "x &amp; y&#13;</A>\n  <B>2</B>\n  ", "<E/>\n</r>\n", change},
      {"<r><G>", "", kAdded, "</G><G/></r>", append},
      {"<r xmlns='u'><G>", "", kAddedWithout, "</G></r>", append},
      {"<r xmlns='u'><p:G xmlns:p='p'>", "", kAddedWithout, "</p:G></r>", append},
      {"<r><G xmlns='u'>", "", kAddedWithout, "</G></r>", append},
      {"<r><p:G xmlns:p='p'>", "", kAdded, "</p:G></r>", append},
      {"<r xmlns='u'><p:G xmlns:p='p' xmlns=''>", "", kAdded, "</p:G></r>", append},
      {"<r xmlns='u'><G xmlns=''><A/>", "", kAdded, "</G></r>", append},
      {"<r xmlns='u' a='1'  >\r&#65;", "", "", "</r >\n", [] {}},
  };
  for (const auto& row : rows) {
    Load(row.before + row.removed + row.after);
    row.act();
    EXPECT_EQ(Saved(), row.before + row.added + row.after);
    EXPECT_TRUE(document_.Load(name_));
    // Without an edit the file is left alone; under another name it is a copy.
    const auto written = std::filesystem::last_write_time(folder_.Path("t.xml"));
    EXPECT_EQ(Saved(), row.before + row.added + row.after);
    EXPECT_EQ(std::filesystem::last_write_time(folder_.Path("t.xml")), written);
    document_.Save(folder_.Name("copy.xml"));
    EXPECT_EQ(folder_.Read("copy.xml"), row.before + row.added + row.after);
  }
}

TEST_F(ConfigSaveTest, MissingFileIsNotMadeWhereItCouldBe) {
  EXPECT_FALSE(document_.LoadToChange(name_));
  document_.Save(name_);
  EXPECT_TRUE(folder_.Entries().empty());
  const Text nowhere = folder_.Name("no/t.xml");
  EXPECT_FALSE(document_.LoadToChange(nowhere));
  EXPECT_EQ(ResultOf([&] { document_.Save(nowhere); }), static_cast<HRESULT>(0x80070003));
  const Text elsewhere = OLESTR("http://127.0.0.1:9/t.xml");
  EXPECT_FALSE(document_.Load(elsewhere));
  EXPECT_EQ(ResultOf([&] { document_.Save(elsewhere); }), E_INVALIDARG);
}

TEST_F(ConfigSaveTest, OnlyElementsCanBeChanged) {
  Load("<r id='1'>text<A/></r>");
  for (const char* path : {"/", " / ", "/r/@id", "@id", "/r/@none", "/r/text()", "/r/A/../.."}) {
    std::string message;
    EXPECT_EQ(ResultOf([&] { document_.SelectToChange(FromUtf8(path)); }, &message), E_INVALIDARG)
        << path;
    EXPECT_NE(message.find("t.xml: the node path \"" + std::string(path)), std::string::npos);
  }
  for (const char* path : {"/r/B", "/r/A[@id]", "/r/A[@id/..]", "/r/B/text()"})
    EXPECT_FALSE(document_.SelectToChange(FromUtf8(path))) << path;
  EXPECT_TRUE(document_.SelectToChange(OLESTR("/r/text() | /r/A")));
}

TEST_F(ConfigSaveTest, NamesAndTextsThatXmlForbidsAreRefused) {
  Load("<r/>");
  for (const char* name : {"", "a b", "1a", "a>", "a:b", "\x80", "a\u3000"})
    EXPECT_EQ(ResultOf([&] { document_.Root().Append(name, OLESTR("x")); }), E_INVALIDARG) << name;
  document_.Root().Append("B", FromUtf8("\uFFFE"));
  EXPECT_EQ(ResultOf([&] { document_.Save(name_); }), E_INVALIDARG);
  EXPECT_EQ(folder_.Read("t.xml"), "<r/>");
}

}  // namespace
}  // namespace sab
