#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "base/com_error.h"
#include "platform/file.h"
#include "platform/file_name.h"
#include "system_file.h"

namespace sab {
namespace {

// Ten seconds, in steps.
constexpr int kMaxWaits = 5000;
constexpr useconds_t kWait = 2000;

constexpr HRESULT kLockViolation = static_cast<HRESULT>(0x80070021);

}  // namespace

int TryLock(int file) {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  // Beyond every file that is read, since elsewhere such a lock would keep readers away.
  lock.l_start = static_cast<off_t>(kMaxFileSize);
  lock.l_len = 1;
  // A lock of the process would be lost as soon as any descriptor of the file is closed.
  if (fcntl(file, F_OFD_SETLK, &lock) == 0) return 0;
  return errno == EACCES ? EAGAIN : errno;
}

bool HasNoLocks(int error) { return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP; }

FileLock::FileLock(TextView name) {
  if (ReasonAgainstName(name)) return;
  const std::string path = PathOf(name);
  const std::string shown = "cannot write " + ToUtf8(name) + ": ";
  const auto refuse = [&shown](int error) {
    throw ComError(ResultOf(error), shown + Words(error));
  };
  for (int waits = 0; waits < kMaxWaits; ++waits) {
    OpenFile file(OpenWithoutWaiting(path.c_str(), O_RDWR));
    if (file.Get() < 0) {
      const bool is_no_file = errno == ENOENT || errno == ENOTDIR || errno == EISDIR;
      if (is_no_file || errno == ENXIO) return;
      refuse(errno);
    }
    struct stat opened;
    if (fstat(file.Get(), &opened) != 0) refuse(errno);
    if (!S_ISREG(opened.st_mode)) return;
    const int error = TryLock(file.Get());
    if (error == EAGAIN) {
      usleep(kWait);
      continue;
    }
    if (error != 0 && !HasNoLocks(error)) refuse(error);
    // A save gives the name to another file: who has opened the old one has locked nothing.
    struct stat named = {};
    if (stat(path.c_str(), &named) != 0 && errno != ENOENT) refuse(errno);
    if (opened.st_dev == named.st_dev && opened.st_ino == named.st_ino) {
      file_ = file.Detach();
      return;
    }
  }
  throw ComError(kLockViolation, shown +
                                     "another program has been saving it for ten seconds; nothing "
                                     "was changed, try again");
}

std::optional<std::string> FileLock::ReadBytes(TextView name, std::string& reason) const {
  return file_ != kNone ? sab::ReadBytes(static_cast<int>(file_), reason)
                        : ReadFileBytes(name, reason);
}

FileLock::~FileLock() {
  if (file_ != kNone) close(static_cast<int>(file_));
}

}  // namespace sab
