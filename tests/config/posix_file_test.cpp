// What only a POSIX system has: backslashes in names, links, modes, attributes; and a reader
// without a limit.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <ctime>

#include "config/document_fixture.h"
#include "config/file_results.h"
#include "platform/file_lock.h"

namespace sab {
namespace {

TEST(PosixFile, BackslashSeparatesUnlessTheNameItselfExists) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("sub"));
  folder.Write("sub/a.xml", "separated");
  EXPECT_EQ(ReadOrReason(folder.Name("sub\\a.xml")), "separated");
  folder.Write("sub\\a.xml", "exact");
  EXPECT_EQ(ReadOrReason(folder.Name("sub\\a.xml")), "exact");
  EXPECT_EQ(ResultOfReplacing(folder.Name("sub\\b.xml"), "new"), S_OK);
  const FileLock lock(folder.Name("sub\\b.xml"));
  EXPECT_EQ(folder.Read("sub/b.xml"), "new");
  EXPECT_EQ(folder.Entries().size(), 2U);
}

TEST(PosixFile, SpecialFilesAreRefusedWithoutWaiting) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadOrReason(folder.Name("pipe")), "refused: not a regular file");
  EXPECT_EQ(ResultOfReplacing(folder.Name("pipe"), "x"), E_INVALIDARG);
  // Its size is only known at its end.
  EXPECT_NE(ReadOrReason(OLESTR("/proc/self/status")).find("Name:"), std::string::npos);
}

TEST(PosixFile, LinksAreFollowedAndStay) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("sub"));
  folder.Write("sub/real", "old");
  std::filesystem::create_symlink("sub/real", folder.Path("relative"));
  std::filesystem::create_symlink(folder.Path("relative"), folder.Path("absolute"));
  std::filesystem::create_symlink("sub/later", folder.Path("dangling"));
  std::filesystem::create_symlink("loop", folder.Path("loop"));

  EXPECT_EQ(ResultOfReplacing(folder.Name("absolute"), "new"), S_OK);
  EXPECT_EQ(folder.Read("sub/real"), "new");
  EXPECT_EQ(ResultOfReplacing(folder.Name("dangling"), "made"), S_OK);
  EXPECT_EQ(folder.Read("sub/later"), "made");
  EXPECT_EQ(ResultOfReplacing(folder.Name("loop"), "x"), static_cast<HRESULT>(0x80070781));
  for (const char* link : {"relative", "absolute", "dangling"})
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path(link))) << link;
  EXPECT_EQ(folder.Entries().size(), 5U);
}

TEST(PosixFile, WhatMayNotBeWrittenIsNotReplaced) {
  const TemporaryFolder folder;
  const auto make = [&](const char* name, mode_t mode) {
    if (!std::filesystem::exists(folder.Path(name))) folder.Write(name, "old");
    EXPECT_EQ(chmod(folder.Path(name).c_str(), mode), 0) << name;
  };
  make("", 0777);
  make("readonly", 0444);
  std::filesystem::create_directory(folder.Path("closed"));
  make("closed/f", 0666);
  make("closed", 0555);
  // The superuser may write everything, so he becomes somebody else for the time of the calls.
  constexpr uid_t kNobody = 65534;
  const uid_t user = geteuid();
  ASSERT_TRUE(user != 0 || seteuid(kNobody) == 0);
  const char* const names[] = {"readonly", "closed/f"};
  std::vector<HRESULT> results;
  for (const char* name : names) {
    results.push_back(ResultOfReplacing(folder.Name(name), "x"));
    results.push_back(ResultOf([&] { CheckReplaceable(folder.Name(name)); }));
  }
  results.push_back(ResultOf([&] { const FileLock lock(folder.Name("readonly")); }));
  ASSERT_EQ(seteuid(user), 0);
  make("closed", 0755);
  EXPECT_EQ(results, std::vector<HRESULT>(5, kAccessDenied));
  EXPECT_EQ(folder.Read("readonly"), "old");
  EXPECT_EQ(folder.Read("closed/f"), "old");
}

// Without its rights the owner stays who it was, without support of the file system the attributes
// are not looked at.
TEST(PosixFile, ModeOwnerAndAttributesAreKeptAndOtherHardLinksLeadToTheOldFile) {
  const TemporaryFolder folder;
  folder.Write("f", "old");
  const std::string path = folder.Path("f");
  ASSERT_EQ(link(path.c_str(), folder.Path("other").c_str()), 0);
  const bool is_given_away = chown(path.c_str(), 12345, 23456) == 0;
  bool has_attributes = true;
  for (const std::string name : {"user.first", "user.second"})
    has_attributes &= setxattr(path.c_str(), name.c_str(), name.data(), name.size(), 0) == 0;
  struct stat status = {};
  for (const mode_t mode : {0600U, 0640U, 0666U, 0755U}) {
    ASSERT_EQ(chmod(path.c_str(), mode), 0);
    ReplaceFileBytes(folder.Name("f"), "new");
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, mode);
    EXPECT_EQ(status.st_uid, is_given_away ? 12345U : geteuid());
    EXPECT_EQ(status.st_gid, is_given_away ? 23456U : getegid());
    std::array<char, 16> value;
    EXPECT_EQ(getxattr(path.c_str(), "user.first", value.data(), 16), has_attributes ? 10 : -1);
    EXPECT_EQ(getxattr(path.c_str(), "user.second", value.data(), 16), has_attributes ? 11 : -1);
  }
  EXPECT_EQ(folder.Read("other"), "old");
  const mode_t mask = umask(027);
  ReplaceFileBytes(folder.Name("made"), "new");
  umask(mask);
  ASSERT_EQ(stat(folder.Path("made").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
}

// What looks like a temporary file and is none is left alone.
TEST(PosixFile, OnlyAbandonedTemporaryFilesAreRemoved) {
  const TemporaryFolder folder;
  const std::string own = ".sabxml-" + std::to_string(getpid()) + "-";
  for (int i = 0; i < 1100; ++i) folder.Write(own + std::to_string(i) + ".tmp", "stale");
  folder.Write(".sabxml-1.xml", "no");
  std::filesystem::create_symlink(".sabxml-1.xml", folder.Path(".sabxml-link.tmp"));
  folder.Write(".sabxml-busy.tmp", "yes");
  const FileLock busy(folder.Name(".sabxml-busy.tmp"));
  ReplaceFileBytes(folder.Name("f"), "new");
  EXPECT_EQ(folder.Entries().size(), 4U);
}

int waits = -1;  // counted in place of waiting, if not negative

TEST(PosixFile, WhoCannotHaveTheLockChangesNothing) {
  const TemporaryFolder folder;
  folder.Write("t.xml", "<r/>");
  const FileLock lock(folder.Name("t.xml"));
  waits = 0;
  std::string message;
  EXPECT_EQ(ResultOf([&] { const FileLock second(folder.Name("t.xml")); }, &message),
            static_cast<HRESULT>(0x80070021));
  EXPECT_EQ(waits, 5000);
  waits = -1;
  EXPECT_NE(message.find("t.xml: another program"), std::string::npos) << message;
  EXPECT_EQ(folder.Entries().size(), 1U);
}

using PosixDocumentTest = DocumentTest;

TEST_F(PosixDocumentTest, NestingHasNoLimit) {
  std::string start;
  std::string end;
  for (int level = 0; level < 300000; ++level) {
    start += "<a>";
    end += "</a>";
  }
  Load(start + "<b>x</b>" + end);
  EXPECT_EQ(TextOf(document_.Root()), "x");
  document_.Select("//b").Append("c", OLESTR("y"));
  EXPECT_EQ(Saved(), start + "<b>x<c>y</c></b>" + end);
}

}  // namespace
}  // namespace sab

// In place of the C library's.
extern "C" int usleep(useconds_t microseconds) {
  if (sab::waits >= 0) return ++sab::waits, 0;
  const timespec time = {0, static_cast<long>(microseconds) * 1000};
  return nanosleep(&time, nullptr);
}
