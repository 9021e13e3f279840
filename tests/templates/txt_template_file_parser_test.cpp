#include "config/temporary_folder.h"
#include "support/late_object.h"

namespace sab::testing {
namespace {

constexpr HRESULT kDocumentNotLoaded = static_cast<HRESULT>(0x84000C06);

using namespace std::string_literals;

class TxtTemplateFileParserTest : public ::testing::Test {
 protected:
  HRESULT Load(const std::string& bytes) const {
    folder_.Write("t.txt", bytes);
    return object_.Call("Load", {ToUtf8(folder_.Name("t.txt"))});
  }
  // "name:line|line|" for each section, with a blank between them.
  std::string Sections() const {
    std::string all;
    const int sections = std::stoi(object_.Get("SectionCount"));
    for (int i = 0; i < sections; ++i) {
      const std::string section = std::to_string(i);
      if (i > 0) all += ' ';
      all += object_.Get("SectionName", {section}) + ":";
      const int lines = std::stoi(object_.Get("LineCount", {section}));
      for (int line = 0; line < lines; ++line) {
        all += object_.Get("Line", {section, std::to_string(line)}) + "|";
      }
    }
    return all;
  }

  TemporaryFolder folder_;
  LateObject object_{"VeTxtTemplateFileParser"};
};

TEST_F(TxtTemplateFileParserTest, MarkersDivideTheTextAndTheBytesTellTheEncoding) {
  const struct {
    const char* name;
    std::string bytes;
    std::string sections;
  } rows[] = {
      {"nothing", "", ""},
      {"line ends", "[A]\r\na\rb\n\nc\r\n\r\nd", "A:a|b||c||d|"},
      {"an end is no further line", "[A]\na\n", "A:a|"},
      {"only a line end after the marker", "[A]\n\n[B]", "A:| B:"},
      {"text before", "\nx\n[A]\na", ":|x| A:a|"},
      {"blank text before", "\n \t\n[A]\na", "A:a|"},
      {"no marker", "x\ny", ":x|y|"},
      {"blank lines alone", "\n\n", ""},
      {"white space at a marker", "[ A b\t] \t\na", "A b:a|"},
      {"ideographic space at a marker", "[\u3000栏\u3000]\u3000\na", "栏:a|"},
      {"one name twice", "[A]\na\n[A]\nb", "A:a| A:b|"},
      {"lines keep their blanks", "[A]\n  a  ", "A:  a  |"},
      {"bracket behind a blank", "[A]\n [B]", "A: [B]|"},
      {"text behind the bracket", "[A]\n[B] b", "A:[B] b|"},
      {"not closed", "[A]\n[B\n[", "A:[B|[|"},
      {"empty names", "[A]\n[]\n[ ]", "A:[]|[ ]|"},
      {"brackets in a name", "[A]\n[B]]\n[B][C]", "A:[B]]|[B][C]|"},
      {"doubled brackets", "[[x]\n[A]\n[[B]\n[[[C]]\n[[\na[[b", ":[x]| A:[B]|[[C]]|[|a[[b|"},
      {"a zero character", "[A]\na\0b"s, "A:a\0b|"s},
      {"UTF-8", "[栏]\n图\U0001F4D0", "栏:图\U0001F4D0|"},
      {"UTF-8 with a mark", "\xEF\xBB\xBF[栏]\n图", "栏:图|"},
      {"invalid UTF-8 with a mark", "\xEF\xBB\xBF[A]\n\xC0x", "A:\uFFFDx|"},
      {"UTF-16 LE", "\xFF\xFE[\0\x0F\x68]\0\n\0\x3D\xD8\xD0\xDC"s, "栏:\U0001F4D0|"},
      {"UTF-16 BE", "\xFE\xFF\0[\x68\x0F\0]\0\r\0\n\xD8\x3D\xDC\xD0"s, "栏:\U0001F4D0|"},
      {"surrogates apart, half a unit", "\xFE\xFF\0[\0A\0]\0\n\xDC\xD0\xD8\x3D\0a\xD8\x3D\0"s,
       "A:\uFFFD\uFFFDa\uFFFD\uFFFD|"},
      {"a mark alone", "\xFF\xFE", ""},
      {"GBK", "[\xC0\xB8]\n\xCD\xBC", "栏:图|"},
      {"GBK with brackets for second bytes", "[\xB2]]\n\xB2[x]", "瞉:瞇x]|"},
      {"GBK with a euro", "[A]\n\x80 1", "A:€ 1|"},
      {"not even GBK", "[A]\na\xC0\n\x81", "A:a\uFFFD|\uFFFD|"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_EQ(S_OK, Load(row.bytes));
    EXPECT_EQ(row.sections, Sections());
  }
}

TEST_F(TxtTemplateFileParserTest, SectionsAreFoundByName) {
  ASSERT_EQ(S_OK, Load("text\n[Head]\n[Body]\n[head]\n[Größe]"));
  std::string found;
  for (const char* name : {"Head", "BODY", "Hea", "gRÖße", "", "[Head]"})
    found += object_.Get("FindSection", {name}) + " ";
  EXPECT_EQ("1 2 -1 4 0 -1 ", found);
  ASSERT_EQ(S_OK, Load("[Head]"));
  EXPECT_EQ("-1", object_.Get("FindSection", {""}));
}

TEST_F(TxtTemplateFileParserTest, WhatIsNotThereIsRefused) {
  ASSERT_EQ(S_OK, Load("[A]\na\nb\n[B]"));
  const struct {
    const char* member;
    std::vector<std::string> indexes;
    const char* says;
  } rows[] = {
      {"SectionName", {"-1"}, "There is no section -1: there are 2, counted from 0."},
      {"SectionName", {"2"}, "There is no section 2: there are 2, counted from 0."},
      {"LineCount", {"-1"}, "no section -1"},
      {"LineCount", {"2"}, "no section 2"},
      {"Line", {"2", "0"}, "no section 2"},
      {"Line", {"0", "2"}, "There is no line 2: there are 2, counted from 0."},
      {"Line", {"0", "-1"}, "no line -1"},
      {"Line", {"1", "0"}, "no line 0"},
      {"DefaultMarker", {"5"}, "no default marker 5"},
  };
  for (const auto& row : rows) {
    const LateResult result = object_.Invoke(row.member, DISPATCH_PROPERTYGET, row.indexes);
    EXPECT_EQ(E_INVALIDARG, result.code) << row.member;
    EXPECT_NE(std::string::npos, result.description.find(row.says)) << result.description;
  }
}

TEST_F(TxtTemplateFileParserTest, AFileThatCannotBeReadChangesNothing) {
  EXPECT_EQ("", Sections());
  ASSERT_EQ(S_OK, Load("[A]\na"));
  for (const std::string& name :
       {""s, ToUtf8(folder_.Name("no such file.txt")), ToUtf8(folder_.Name(""))}) {
    std::string failure;
    EXPECT_EQ(kDocumentNotLoaded, object_.Call("Load", {name}, &failure));
    EXPECT_TRUE(name.empty() || failure.starts_with(name + ": ")) << failure;
  }
  EXPECT_EQ("A:a|", Sections());
}

TEST_F(TxtTemplateFileParserTest, DefaultMarkersAreResources) {
  std::string markers = object_.Get("DefaultMarkerCount");
  for (const char* index : {"0", "1", "2", "3", "4"})
    markers += " " + object_.Get("DefaultMarker", {index});
  EXPECT_EQ("5 TitleBlock RevisionBlock BomHead BomBody BomFoot", markers);
}

}  // namespace
}  // namespace sab::testing
