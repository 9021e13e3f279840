// What only a POSIX system has: backslashes in names, links, modes, and calls that can be made to
// fail one by one.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "config/failing_calls.h"
#include "config/file_results.h"

namespace sab {
namespace {

mode_t ModeOf(const std::filesystem::path& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

TEST(PosixFile, BackslashSeparatesUnlessTheNameItselfExists) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("sub"));
  folder.Write("sub/a.xml", "separated");
  EXPECT_EQ(ReadOrReason(folder.Name("sub\\a.xml")), "separated");
  folder.Write("sub\\a.xml", "exact");
  EXPECT_EQ(ReadOrReason(folder.Name("sub\\a.xml")), "exact");
  EXPECT_EQ(ResultOfReplacing(folder.Name("sub\\b.xml"), "new"), S_OK);
  EXPECT_EQ(folder.Read("sub/b.xml"), "new");
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

TEST(PosixFile, ModeIsKeptAndNewFilesObeyTheMask) {
  const TemporaryFolder folder;
  folder.Write("f", "old");
  for (const mode_t mode : {0600U, 0640U, 0666U, 0755U}) {
    ASSERT_EQ(chmod(folder.Path("f").c_str(), mode), 0);
    ReplaceFileBytes(folder.Name("f"), "new");
    EXPECT_EQ(ModeOf(folder.Path("f")), mode);
  }
  const mode_t mask = umask(027);
  ReplaceFileBytes(folder.Name("made"), "new");
  umask(mask);
  EXPECT_EQ(ModeOf(folder.Path("made")), 0640U);
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
  const HRESULT read_only = ResultOfReplacing(folder.Name("readonly"), "x");
  const HRESULT closed = ResultOfReplacing(folder.Name("closed/f"), "x");
  ASSERT_EQ(seteuid(user), 0);
  make("closed", 0755);
  EXPECT_EQ(read_only, kAccessDenied);
  EXPECT_EQ(closed, kAccessDenied);
  EXPECT_EQ(folder.Read("readonly"), "old");
  EXPECT_EQ(folder.Read("closed/f"), "old");
}

ssize_t WriteOneByte(int file, const void* bytes, std::size_t) { return write(file, bytes, 1); }

int calls_until_failure;

TEST(PosixFile, WhateverCallFailsTheOldFileIsWhole) {
  constexpr HRESULT kWriteProtected = static_cast<HRESULT>(0x80070013);
  constexpr HRESULT kDiskFull = static_cast<HRESULT>(0x80070070);
  constexpr HRESULT kDeviceError = static_cast<HRESULT>(0x8007045D);
  const struct {
    HRESULT code;
    void (*change)(FileCalls&);
  } rows[] = {
      {kDiskFull, [](FileCalls& calls) { calls.write = Fail<ENOSPC>; }},
      {kDiskFull,
       [](FileCalls& calls) {
         calls.write = [](int file, const void* bytes, std::size_t size) -> ssize_t {
           return calls_until_failure-- > 0 ? WriteOneByte(file, bytes, size) : Fail<ENOSPC, int>();
         };
       }},
      {kDiskFull,
       [](FileCalls& calls) {
         calls.write = [](int, const void*, std::size_t) -> ssize_t { return 0; };
       }},
      {kDiskFull,
       [](FileCalls& calls) {
         calls.close = [](int file) {
           close(file);
           return Fail<EDQUOT, int>();
         };
       }},
      {kAccessDenied, [](FileCalls& calls) { calls.fchmod = Fail<EPERM>; }},
      {kDeviceError, [](FileCalls& calls) { calls.fsync = Fail<EIO>; }},
      {kWriteProtected, [](FileCalls& calls) { calls.rename = Fail<EROFS>; }},
  };
  const TemporaryFolder folder;
  folder.Write("f", "old");
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    calls_until_failure = 3;
    {
      const FailingCalls failing(row.change);
      EXPECT_EQ(ResultOfReplacing(folder.Name("f"), "new bytes"), row.code);
    }
    EXPECT_EQ(folder.Read("f"), "old");
    EXPECT_EQ(folder.Entries().size(), 1U);
  }
}

TEST(PosixFile, InterruptedAndShortWritesGoOn) {
  const TemporaryFolder folder;
  const FailingCalls failing([](FileCalls& calls) {
    calls.write = [](int file, const void* bytes, std::size_t size) -> ssize_t {
      static bool interrupt = false;
      interrupt = !interrupt;
      return interrupt ? Fail<EINTR, int>() : WriteOneByte(file, bytes, size);
    };
  });
  ReplaceFileBytes(folder.Name("f"), "bytes");
  EXPECT_EQ(folder.Read("f"), "bytes");
}

TEST(PosixFile, OwnerIsKeptOrTheReplacementRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give files away";
  const TemporaryFolder folder;
  folder.Write("f", "old");
  ASSERT_EQ(chown(folder.Path("f").c_str(), 12345, 23456), 0);
  ReplaceFileBytes(folder.Name("f"), "new");
  struct stat status = {};
  ASSERT_EQ(stat(folder.Path("f").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 12345U);
  EXPECT_EQ(status.st_gid, 23456U);

  const FailingCalls failing([](FileCalls& calls) { calls.fchown = Fail<EPERM>; });
  EXPECT_EQ(ResultOfReplacing(folder.Name("f"), "newer"), kAccessDenied);
  EXPECT_EQ(folder.Read("f"), "new");
}

}  // namespace
}  // namespace sab
