// What configuration documents can do only on our own reader.

#include <gtest/gtest.h>

#include <cerrno>

#include "common/config_document.h"
#include "config/temporary_folder.h"
#include "platform/posix/file_calls.h"

namespace sab {
namespace {

std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(PosixDocument, NestingHasNoLimit) {
  constexpr int kLevels = 300000;
  const TemporaryFolder folder;
  const std::string start = Repeated("<a>", kLevels);
  const std::string end = Repeated("</a>", kLevels);
  folder.Write("deep.xml", start + "x" + end);
  ConfigDocument document;
  ASSERT_TRUE(document.Load(folder.Name("deep.xml")));
  Text text;
  EXPECT_EQ(ToUtf8(document.Root().ReadText(text)), "x");
  int levels = 0;
  ConfigElement element = document.Root();
  ConfigElement innermost;
  while (element) {
    ++levels;
    innermost = element;
    element = *element.Children().begin();
  }
  EXPECT_EQ(levels, kLevels);
  innermost.Append("b", OLESTR("y"));
  document.Save(folder.Name("deep.xml"));
  EXPECT_EQ(folder.Read("deep.xml"), start + "x<b>y</b>" + end);
}

TEST(PosixDocument, PlacesAreExact) {
  const TemporaryFolder folder;
  folder.Write("good.xml", "<r>\r\n  <\u4E2D/><A/>\r\n</r>");
  ConfigDocument document;
  ASSERT_TRUE(document.Load(folder.Name("good.xml")));
  const TextPosition position = document.Select("/r/A").Position();
  EXPECT_EQ(position.line, 2U);
  EXPECT_EQ(position.column, 7U);

  folder.Write("bad.xml", "<r>\n  <A>\n  </B>\n</r>");
  EXPECT_FALSE(document.Load(folder.Name("bad.xml")));
  EXPECT_EQ(document.Failure().position.line, 3U);
  EXPECT_NE(document.Failure().Describe().find("bad.xml:3:"), std::string::npos);
}

TEST(PosixDocument, WindowsPathsOpenAndSave) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("cfg"));
  folder.Write("cfg/a.xml", "<r/>");
  const Text name = folder.Name("cfg\\a.xml");
  ConfigDocument document;
  ASSERT_TRUE(document.Load(name));
  document.Root().Append("A");
  document.Save(name);
  EXPECT_NE(folder.Read("cfg/a.xml").find("<A/>"), std::string::npos);
  EXPECT_EQ(folder.Entries().size(), 1U);
}

TEST(PosixDocument, FailedSaveLeavesTheFileAndCanBeRepeated) {
  const TemporaryFolder folder;
  folder.Write("t.xml", "<r></r>");
  ConfigDocument document;
  ASSERT_TRUE(document.Load(folder.Name("t.xml")));
  document.Root().Append("A", OLESTR("1"));
  const FileCalls calls = CurrentFileCalls();
  CurrentFileCalls().fsync = [](int) {
    errno = EIO;
    return -1;
  };
  std::string message;
  const HRESULT result = ResultOf([&] { document.Save(folder.Name("t.xml")); }, &message);
  CurrentFileCalls() = calls;
  EXPECT_EQ(result, static_cast<HRESULT>(0x8007045D));
  EXPECT_NE(message.find("t.xml"), std::string::npos) << message;
  EXPECT_EQ(folder.Read("t.xml"), "<r></r>");
  EXPECT_EQ(folder.Entries().size(), 1U);
  document.Save(folder.Name("t.xml"));
  EXPECT_EQ(folder.Read("t.xml"), "<r><A>1</A></r>");
}

}  // namespace
}  // namespace sab
