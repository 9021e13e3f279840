#include <gtest/gtest.h>

#include "config/temporary_folder.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

constexpr HRESULT kDocumentNotLoaded = static_cast<HRESULT>(0x84000C06);

using Parser = ComPtr<IVeTxtTemplateFileParser>;
using namespace std::string_literals;

class TxtTemplateFileParserTest : public ::testing::Test {
 protected:
  HRESULT Load(const std::string& bytes) {
    folder_.Write("t.txt", bytes);
    return parser_->Load(Bstr(folder_.Name("t.txt")).Get());
  }

  TemporaryFolder folder_;
  Parser parser_ = Created<IVeTxtTemplateFileParser>(CLSID_VeTxtTemplateFileParser);
};

// "name:line|line|" for each section, with a blank between them.
std::string SectionsOf(IVeTxtTemplateFileParser& parser) {
  std::string all;
  INT sections = -1;
  EXPECT_EQ(S_OK, parser.get_SectionCount(&sections));
  for (INT section = 0; section < sections; ++section) {
    Bstr name;
    EXPECT_EQ(S_OK, parser.get_SectionName(section, name.Put()));
    all += (section == 0 ? "" : " ") + ToUtf8(name.View()) + ":";
    INT lines = -1;
    EXPECT_EQ(S_OK, parser.get_LineCount(section, &lines));
    for (INT line = 0; line < lines; ++line) {
      Bstr text;
      EXPECT_EQ(S_OK, parser.get_Line(section, line, text.Put()));
      all += ToUtf8(text.View()) + "|";
    }
  }
  return all;
}

TEST_F(TxtTemplateFileParserTest, MarkersDivideTheText) {
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
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_EQ(S_OK, Load(row.bytes));
    EXPECT_EQ(row.sections, SectionsOf(*parser_.Get()));
  }
}

TEST_F(TxtTemplateFileParserTest, TheBytesTellTheEncoding) {
  const struct {
    const char* name;
    std::string bytes;
    const char* sections;
  } rows[] = {
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
    EXPECT_EQ(row.sections, SectionsOf(*parser_.Get()));
  }
}

TEST_F(TxtTemplateFileParserTest, SectionsAreFoundByName) {
  ASSERT_EQ(S_OK, Load("text\n[Head]\n[Body]\n[head]\n[Größe]"));
  const struct {
    const OLECHAR* name;
    INT section;
  } rows[] = {{OLESTR("Head"), 1},  {OLESTR("BODY"), 2}, {OLESTR("Hea"), -1},
              {OLESTR("gRÖße"), 4}, {OLESTR(""), 0},     {OLESTR("[Head]"), -1}};
  for (const auto& row : rows) {
    INT section = -2;
    EXPECT_EQ(S_OK, parser_->FindSection(Bstr(row.name).Get(), &section));
    EXPECT_EQ(row.section, section) << ToUtf8(row.name);
  }
  INT section = -2;
  EXPECT_EQ(S_OK, parser_->FindSection(nullptr, &section));
  EXPECT_EQ(0, section);
  ASSERT_EQ(S_OK, Load("[Head]"));
  EXPECT_EQ(S_OK, parser_->FindSection(nullptr, &section));
  EXPECT_EQ(-1, section);
}

TEST_F(TxtTemplateFileParserTest, WhatIsNotThereIsRefused) {
  ASSERT_EQ(S_OK, Load("[A]\na\nb\n[B]"));
  IVeTxtTemplateFileParser& parser = *parser_.Get();
  for (const INT section : {-1, 2}) {
    Bstr text;
    INT count = 0;
    EXPECT_EQ(E_INVALIDARG, parser.get_SectionName(section, text.Put()));
    EXPECT_EQ("There is no section " + std::to_string(section) + ": there are 2, counted from 0.",
              TakeErrorDescription());
    EXPECT_EQ(E_INVALIDARG, parser.get_LineCount(section, &count));
    EXPECT_EQ(E_INVALIDARG, parser.get_Line(section, 0, text.Put()));
  }
  for (const auto& [section, line] : {std::pair(0, 2), {0, -1}, {1, 0}}) {
    Bstr text;
    EXPECT_EQ(E_INVALIDARG, parser.get_Line(section, line, text.Put()));
  }
  EXPECT_EQ(E_POINTER, parser.get_SectionCount(nullptr));
  EXPECT_EQ(E_POINTER, parser.get_SectionName(0, nullptr));
  EXPECT_EQ(E_POINTER, parser.FindSection(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, parser.get_LineCount(0, nullptr));
  EXPECT_EQ(E_POINTER, parser.get_Line(0, 0, nullptr));
  EXPECT_EQ(E_POINTER, parser.get_DefaultMarkerCount(nullptr));
  EXPECT_EQ(E_POINTER, parser.get_DefaultMarker(0, nullptr));
}

TEST_F(TxtTemplateFileParserTest, AFileThatCannotBeReadChangesNothing) {
  EXPECT_EQ("", SectionsOf(*parser_.Get()));
  ASSERT_EQ(S_OK, Load("[A]\na"));
  EXPECT_EQ(kDocumentNotLoaded, parser_->Load(nullptr));
  for (const Text& name : {folder_.Name("no such file.txt"), folder_.Name("")}) {
    EXPECT_EQ(kDocumentNotLoaded, parser_->Load(Bstr(name).Get()));
    const std::string description = TakeErrorDescription();
    EXPECT_TRUE(description.starts_with(ToUtf8(name) + ": ")) << description;
  }
  EXPECT_EQ("A:a|", SectionsOf(*parser_.Get()));
}

TEST_F(TxtTemplateFileParserTest, DefaultMarkersAreResources) {
  std::string markers;
  INT count = 0;
  ASSERT_EQ(S_OK, parser_->get_DefaultMarkerCount(&count));
  for (INT i = 0; i < count; ++i) {
    Bstr marker;
    EXPECT_EQ(S_OK, parser_->get_DefaultMarker(i, marker.Put()));
    markers += ToUtf8(marker.View()) + " ";
  }
  EXPECT_EQ("TitleBlock RevisionBlock BomHead BomBody BomFoot ", markers);
  Bstr none;
  EXPECT_EQ(E_INVALIDARG, parser_->get_DefaultMarker(count, none.Put()));
}

}  // namespace
}  // namespace sab::testing
