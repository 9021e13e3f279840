// What only a POSIX system has: backslashes in names, links, modes, and calls that can be made to
// fail one by one.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "base/com_error.h"
#include "config/temporary_folder.h"
#include "platform/file.h"
#include "platform/posix/file_calls.h"

namespace sab {
namespace {

std::string ReadOrReason(TextView name) {
  std::string reason;
  const auto bytes = ReadFileBytes(name, reason);
  return bytes ? *bytes : "refused: " + reason;
}

HRESULT ResultOfReplacing(TextView name, std::string_view bytes) {
  try {
    ReplaceFileBytes(name, bytes);
    return S_OK;
  } catch (const ComError& error) {
    return error.Code();
  }
}

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
  ASSERT_EQ(chmod(folder.Path("").c_str(), 0777), 0);
  folder.Write("readonly", "old");
  ASSERT_EQ(chmod(folder.Path("readonly").c_str(), 0444), 0);
  std::filesystem::create_directory(folder.Path("closed"));
  folder.Write("closed/f", "old");
  ASSERT_EQ(chmod(folder.Path("closed/f").c_str(), 0666), 0);
  ASSERT_EQ(chmod(folder.Path("closed").c_str(), 0555), 0);

  // The superuser may write everything, so he becomes somebody else for the time of the calls.
  constexpr uid_t kNobody = 65534;
  const bool is_superuser = geteuid() == 0;
  if (is_superuser) {
    ASSERT_EQ(seteuid(kNobody), 0);
  }
  const HRESULT read_only = ResultOfReplacing(folder.Name("readonly"), "x");
  const HRESULT closed = ResultOfReplacing(folder.Name("closed/f"), "x");
  if (is_superuser) {
    ASSERT_EQ(seteuid(0), 0);
  }
  EXPECT_EQ(read_only, static_cast<HRESULT>(0x80070005));
  EXPECT_EQ(closed, static_cast<HRESULT>(0x80070005));
  EXPECT_EQ(folder.Read("readonly"), "old");
  EXPECT_EQ(folder.Read("closed/f"), "old");
  ASSERT_EQ(chmod(folder.Path("closed").c_str(), 0755), 0);
}

// Lets one call of the system fail for the lifetime of the object.
class FailingCalls {
 public:
  explicit FailingCalls(const std::function<void(FileCalls&)>& change)
      : saved_(CurrentFileCalls()) {
    change(CurrentFileCalls());
  }
  FailingCalls(const FailingCalls&) = delete;
  FailingCalls& operator=(const FailingCalls&) = delete;
  ~FailingCalls() { CurrentFileCalls() = saved_; }

 private:
  FileCalls saved_;
};

template <int error>
int Fail() {
  errno = error;
  return -1;
}

int writes_until_full;

TEST(PosixFile, WhateverCallFailsTheOldFileIsWhole) {
  const struct {
    const char* label;
    HRESULT code;
    void (*change)(FileCalls&);
  } rows[] = {
      {"disk full at once", static_cast<HRESULT>(0x80070070),
       [](FileCalls& calls) {
         calls.write = [](int, const void*, std::size_t) -> ssize_t { return Fail<ENOSPC>(); };
       }},
      {"disk full after some bytes", static_cast<HRESULT>(0x80070070),
       [](FileCalls& calls) {
         writes_until_full = 3;
         calls.write = [](int file, const void* bytes, std::size_t) -> ssize_t {
           return writes_until_full-- > 0 ? write(file, bytes, 1) : Fail<ENOSPC>();
         };
       }},
      {"nothing is written", static_cast<HRESULT>(0x80070070),
       [](FileCalls& calls) {
         calls.write = [](int, const void*, std::size_t) -> ssize_t { return 0; };
       }},
      {"mode", static_cast<HRESULT>(0x80070005),
       [](FileCalls& calls) { calls.fchmod = [](int, mode_t) { return Fail<EPERM>(); }; }},
      {"flush", static_cast<HRESULT>(0x8007045D),
       [](FileCalls& calls) { calls.fsync = [](int) { return Fail<EIO>(); }; }},
      {"close", static_cast<HRESULT>(0x80070070),
       [](FileCalls& calls) {
         calls.close = [](int file) {
           close(file);
           return Fail<EDQUOT>();
         };
       }},
      {"rename", static_cast<HRESULT>(0x80070013),
       [](FileCalls& calls) {
         calls.rename = [](const char*, const char*) { return Fail<EROFS>(); };
       }},
  };
  const TemporaryFolder folder;
  folder.Write("f", "old");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
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
    calls.write = [](int file, const void* bytes, std::size_t) -> ssize_t {
      static bool interrupt = false;
      interrupt = !interrupt;
      return interrupt ? Fail<EINTR>() : write(file, bytes, 1);
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

  const FailingCalls failing(
      [](FileCalls& calls) { calls.fchown = [](int, uid_t, gid_t) { return Fail<EPERM>(); }; });
  EXPECT_EQ(ResultOfReplacing(folder.Name("f"), "newer"), static_cast<HRESULT>(0x80070005));
  EXPECT_EQ(folder.Read("f"), "new");
}

}  // namespace
}  // namespace sab
