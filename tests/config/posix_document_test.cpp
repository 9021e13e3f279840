// What configuration documents can do only on our own reader.

#include <gtest/gtest.h>

#include "config/document_fixture.h"

namespace sab {
namespace {

using PosixDocumentTest = DocumentTest;

std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST_F(PosixDocumentTest, NestingHasNoLimit) {
  constexpr int kLevels = 300000;
  const std::string start = Repeated("<a>", kLevels);
  const std::string end = Repeated("</a>", kLevels);
  Load(start + "x" + end);
  EXPECT_EQ(TextOf(document_.Root()), "x");
  int levels = 0;
  ConfigElement innermost;
  for (ConfigElement element = document_.Root(); element; element = *element.Children().begin()) {
    ++levels;
    innermost = element;
  }
  EXPECT_EQ(levels, kLevels);
  innermost.Append("b", OLESTR("y"));
  EXPECT_EQ(Saved(), start + "x<b>y</b>" + end);
}

TEST_F(PosixDocumentTest, PlacesAreExact) {
  Load("<r>\r\n  <\u4E2D/><A/>\r\n</r>");
  const TextPosition position = document_.Select("/r/A").Position();
  EXPECT_EQ(position.line, 2U);
  EXPECT_EQ(position.column, 7U);

  folder_.Write("t.xml", "<r>\n  <A>\n  </B>\n</r>");
  EXPECT_FALSE(document_.Load(name_));
  EXPECT_NE(document_.Failure().Describe().find("t.xml:3:3"), std::string::npos);
}

TEST_F(PosixDocumentTest, WindowsPathsOpenAndSave) {
  std::filesystem::create_directory(folder_.Path("cfg"));
  folder_.Write("cfg/a.xml", "<r/>");
  name_ = folder_.Name("cfg\\a.xml");
  ASSERT_TRUE(document_.Load(name_));
  document_.Root().Append("A");
  document_.Save(name_);
  EXPECT_EQ(folder_.Read("cfg/a.xml"), "<r><A/></r>");
  EXPECT_EQ(folder_.Entries().size(), 1U);
}

}  // namespace
}  // namespace sab
