#include "platform/file.h"

#include <gtest/gtest.h>

#include "config/file_results.h"

namespace sab {
namespace {

TEST(File, ReadsAllBytesOfAnySize) {
  const TemporaryFolder folder;
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 300000U}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7);
    folder.Write("f", bytes);
    EXPECT_EQ(ReadOrReason(folder.Name("f")), bytes) << size;
  }
}

TEST(File, RefusesWhatIsNoFileAndSaysWhy) {
  const TemporaryFolder folder;
  const struct {
    Text name;
    const char* reason;  // a part of it
  } rows[] = {
      {Text(), "no file is named"},
      {folder.Name("none"), ""},
      {folder.Name(""), ""},
      {Text(OLESTR("http://127.0.0.1:9/a.xml")), "network"},
      {Text(OLESTR("HTTPS://localhost/a.xml")), "network"},
      {folder.Name("f") + OLECHAR{0} + OLESTR("tail"), "zero"},
  };
  folder.Write("f", "x");
  for (const auto& row : rows) {
    const std::string outcome = ReadOrReason(row.name);
    EXPECT_TRUE(outcome.starts_with("refused: ") && outcome.size() > 9) << outcome;
    EXPECT_NE(outcome.find(row.reason), std::string::npos) << outcome;
  }
}

TEST(File, FileAddressesLeadToTheFile) {
  const TemporaryFolder folder;
  folder.Write("a b%.xml", "x");
  std::string path = ToUtf8(folder.Name("a%20b%25.xml"));
  for (char& c : path) c = c == '\\' ? '/' : c;
  if (path.front() != '/') path.insert(0, 1, '/');
  for (const char* scheme : {"file://", "FILE://", "file:", "file://localhost"})
    EXPECT_EQ(ReadOrReason(FromUtf8(scheme + path)), "x") << scheme;
}

TEST(File, ReplacesAndCreatesWithoutLeftovers) {
  const TemporaryFolder folder;
  const std::string names[] = {"plain.xml", "\u914D\u7F6E.xml"};
  for (const std::string& name : names) {
    const auto path = std::filesystem::path(FromUtf8(name));
    const Text full = TemporaryFolder::NameOf(folder.Path("") / path);
    EXPECT_FALSE(FileExists(full));
    ReplaceFileBytes(full, "new");
    EXPECT_TRUE(FileExists(full));
    ReplaceFileBytes(full, std::string(200000, 'y'));
    ReplaceFileBytes(full, "short");
    EXPECT_EQ(ReadOrReason(full), "short");
  }
  EXPECT_EQ(folder.Entries().size(), 2U);
}

TEST(File, FailedReplacementNamesFileAndReason) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("sub"));
  folder.Write("file", "old");
  const struct {
    Text name;
    HRESULT code;
  } rows[] = {
      {folder.Name("no/such.xml"), kPathNotFound},
      {folder.Name("sub"), kAccessDenied},
      {Text(), E_INVALIDARG},
      {Text(OLESTR("http://localhost/a.xml")), E_INVALIDARG},
  };
  for (const auto& row : rows) {
    std::string message;
    EXPECT_EQ(ResultOf([&] { CheckReplaceable(row.name); }), row.code) << ToUtf8(row.name);
    EXPECT_EQ(ResultOfReplacing(row.name, "x", &message), row.code) << ToUtf8(row.name);
    EXPECT_NE(message.find("cannot write " + ToUtf8(row.name) + ": "), std::string::npos)
        << message;
  }
  EXPECT_EQ(folder.Read("file"), "old");
  EXPECT_EQ(folder.Entries().size(), 2U);
}

}  // namespace
}  // namespace sab
