// Edits and saving: every byte outside the edits stays, or the file stays as it was.

#include <gtest/gtest.h>

#include <thread>

#include "config/document_fixture.h"

namespace sab {
namespace {

using ConfigSaveTest = DocumentTest;

std::string Utf16(std::string_view utf8, bool big_endian) {
  std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const OLECHAR unit : FromUtf8(utf8)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += big_endian ? high : low;
    bytes += big_endian ? low : high;
  }
  return bytes;
}

TEST_F(ConfigSaveTest, AppendedElementsLookLikeTheirNeighbours) {
  const std::string before =
      "<?xml version='1.0'?>\r\n<!-- \u4E2D -->\r\n<r>\r\n\t<G a = 'x' >\r\n\t\t<A>&#49;</A>\r\n"
      "\t</G >\r\n\r\n</r>\r\n<!-- end -->";
  const std::string after =
      "<?xml version='1.0'?>\r\n<!-- \u4E2D -->\r\n<r>\r\n\t<G a = 'x' >\r\n\t\t<A>&#49;</A>\r\n"
      "\t\t<New>\U0001F600&lt;b</New>\r\n\t\t<List>\r\n\t\t\t<Item>1</Item>\r\n"
      "\t\t\t<Item>2</Item>\r\n\t\t</List>\r\n\t</G >\r\n\r\n</r>\r\n<!-- end -->";
  const struct {
    std::string before;
    std::string after;
  } rows[] = {
      {before, after},
      {"\xEF\xBB\xBF" + before, "\xEF\xBB\xBF" + after},
      {Utf16(before, true), Utf16(after, true)},
      {Utf16(before, false), Utf16(after, false)},
      {"<r><G><A>1</A></G></r>",
       "<r><G><A>1</A><New>\U0001F600&lt;b</New><List><Item>1</Item><Item>2</Item></List></G></r>"},
  };
  for (const auto& row : rows) {
    Load(row.before);
    ConfigElement group = document_.Select("/r/G");
    group.Append("New", FromUtf8("\U0001F600<b"));
    AppendedElement list = group.Append("List");
    list.Append("Item", OLESTR("1"));
    list.Append("Item", OLESTR("2"));
    EXPECT_EQ(Saved(), row.after);
  }
}

// What was appended shows in the file and not in the loaded document.
TEST_F(ConfigSaveTest, SavingTwiceKeepsBothAndTheFirstIsRead) {
  for (const char* empty : {"<G/>", "<G />", "<G></G>"}) {
    Load(std::string("<r>") + empty + "</r>");
    for (const OLECHAR* value : {OLESTR("first"), OLESTR("second")}) {
      const std::string before = TextAt("/r/G/Key");
      document_.Select("/r/G").Append("Key", value);
      EXPECT_EQ(TextAt("/r/G/Key"), before);
      document_.Save(name_);
      ASSERT_TRUE(document_.Load(name_)) << empty;
    }
    EXPECT_EQ(TextAt("/r/G/Key"), "first");
    EXPECT_EQ(TextAt("/r/G/Key[2]"), "second");
  }
}

TEST_F(ConfigSaveTest, TextIsReplacedAndElementsAreRemovedInPlace) {
  Load("<r>\n  <A>1<!-- old --></A>\n  <B/>\n  <C>3</C>\n  <D>4</D><E/>\n</r>\n");
  document_.Select("/r/A").SetText(OLESTR("x & y\r"));
  document_.Select("/r/B").SetText(OLESTR("2"));
  document_.Select("/r/C").Remove();
  document_.Select("/r/D").Remove();
  EXPECT_EQ(Saved(), "<r>\n  <A>x &amp; y&#13;</A>\n  <B>2</B>\n  <E/>\n</r>\n");
}

TEST_F(ConfigSaveTest, WithoutAnEditTheFileIsLeftAlone) {
  const std::string bytes =
      "\xEF\xBB\xBF<?xml version='1.0' ?>\r\n<r a='1'  b=\"2\" >\n&#65;\r</r >\n";
  Load(bytes);
  EXPECT_FALSE(document_.Select("/r/None"));
  const auto written = std::filesystem::last_write_time(folder_.Path("t.xml"));
  EXPECT_EQ(Saved(), bytes);
  EXPECT_EQ(std::filesystem::last_write_time(folder_.Path("t.xml")), written);
  // Under another name it is a copy.
  document_.Save(folder_.Name("copy.xml"));
  EXPECT_EQ(folder_.Read("copy.xml"), bytes);
}

TEST_F(ConfigSaveTest, MissingFileIsNotMadeWhereItCouldBe) {
  EXPECT_FALSE(document_.LoadToChange(name_));
  document_.Save(name_);
  EXPECT_TRUE(folder_.Entries().empty());
  const Text nowhere = folder_.Name("no/t.xml");
  EXPECT_FALSE(document_.LoadToChange(nowhere));
  EXPECT_EQ(ResultOf([&] { document_.Save(nowhere); }), static_cast<HRESULT>(0x80070003));
}

TEST_F(ConfigSaveTest, ManyWritersLoseNothing) {
  constexpr int kWriters = 4;
  constexpr int kSaves = 10;
  folder_.Write("t.xml", "<r/>");
  std::vector<std::thread> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.emplace_back([this] {
      EXPECT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
      for (int i = 0; i < kSaves; ++i) {
        ConfigDocument document;
        EXPECT_TRUE(document.LoadToChange(name_)) << document.Failure().Describe();
        document.Root().Append("A");
        document.Save(name_);
      }
      CoUninitialize();
    });
  }
  for (std::thread& writer : writers) writer.join();
  ASSERT_TRUE(document_.Load(name_));
  EXPECT_EQ(document_.SelectElements(OLESTR("/r/A")).size(), std::size_t{kWriters * kSaves});
  EXPECT_EQ(folder_.Entries().size(), 1U);
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

// A path looks for elements in no namespace, so these are what is added.
TEST_F(ConfigSaveTest, AddedElementsInheritNoNamespace) {
  constexpr char kAdded[] = "<N>x</N>";
  constexpr char kAddedWithout[] = "<N xmlns=\"\">x</N>";
  const struct {
    const char* before;  // the node is G
    const char* after;
    const char* added;
  } rows[] = {
      {"<r xmlns='u'><G>", "</G></r>", kAddedWithout},
      {"<r xmlns='u'><p:G xmlns:p='p'>", "</p:G></r>", kAddedWithout},
      {"<r><G xmlns='u'>", "</G></r>", kAddedWithout},
      {"<r><p:G xmlns:p='p'>", "</p:G></r>", kAdded},
      {"<r xmlns='u'><p:G xmlns:p='p' xmlns=''>", "</p:G></r>", kAdded},
      {"<r xmlns='u'><G xmlns=''><A/>", "</G></r>", kAdded},
  };
  for (const auto& row : rows) {
    Load(std::string(row.before) + row.after);
    document_.Select("//*[local-name()='G']").Append("N", OLESTR("x"));
    EXPECT_EQ(Saved(), std::string(row.before) + row.added + row.after);
    ASSERT_TRUE(document_.Load(name_));
    EXPECT_EQ(TextAt("//*[local-name()='G']/N"), "x");
  }
}

TEST_F(ConfigSaveTest, WhatCouldNotBeReadIsNeverOverwritten) {
  folder_.Write("t.xml", "<r><A></r>");
  EXPECT_FALSE(document_.Load(name_));
  std::string message;
  EXPECT_EQ(ResultOf([&] { document_.Save(name_); }, &message), kDocumentNotLoaded);
  EXPECT_NE(message.find("t.xml"), std::string::npos) << message;
  EXPECT_EQ(folder_.Read("t.xml"), "<r><A></r>");
  EXPECT_EQ(folder_.Entries().size(), 1U);

  EXPECT_FALSE(document_.Load(OLESTR("http://127.0.0.1:9/t.xml")));
  EXPECT_EQ(ResultOf([&] { document_.Save(OLESTR("http://127.0.0.1:9/t.xml")); }), E_INVALIDARG);
}

TEST_F(ConfigSaveTest, NewDocumentHasADeclaration) {
  document_.Create("History");
  document_.Root().Append("Entry", FromUtf8("C:\\\u56FE & <1>"));
  const std::string saved = Saved();
  EXPECT_TRUE(saved.starts_with("<?xml version='1.0' encoding='UTF-8'?>")) << saved;
  ASSERT_TRUE(document_.Load(name_)) << saved;
  EXPECT_EQ(TextAt("/History/Entry"), "C:\\\u56FE & <1>");
}

TEST_F(ConfigSaveTest, NamesAndTextsThatXmlForbidsAreRefused) {
  const std::string bytes = "<r><A>1</A></r>";
  Load(bytes);
  const char* const names[] = {"", "a b", "1a", "<", "a>", "a:b", "\x80", "a\u3000"};
  for (const char* name : names)
    EXPECT_EQ(ResultOf([&] { document_.Select("/r").Append(name, OLESTR("x")); }), E_INVALIDARG)
        << name;
  for (const char* text : {"\x01", "\uFFFE"}) {
    Load(bytes);
    document_.Select("/r").Append("B", FromUtf8(text));
    EXPECT_EQ(ResultOf([&] { document_.Save(name_); }), E_INVALIDARG);
    Load(bytes);
    document_.Select("/r/A").SetText(FromUtf8(text));
    EXPECT_EQ(ResultOf([&] { document_.Save(name_); }), E_INVALIDARG);
  }
  EXPECT_EQ(folder_.Read("t.xml"), bytes);
}

}  // namespace
}  // namespace sab
