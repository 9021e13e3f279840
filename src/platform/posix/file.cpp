#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <system_error>
#include <utility>

#include "base/com_error.h"
#include "file_calls.h"
#include "platform/file_name.h"

namespace sab {
namespace {

constexpr int kMostLinks = 40;
constexpr int kMostNames = 1000;
constexpr std::size_t kRoom = 4096;

std::string Words(int error) { return std::generic_category().message(error); }

// The result code that Windows has for the same reason.
HRESULT ResultOf(int error) {
  const auto windows = [](unsigned code) { return static_cast<HRESULT>(0x80070000U | code); };
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return windows(3);  // ERROR_PATH_NOT_FOUND
    case EMFILE:
    case ENFILE:
      return windows(4);  // ERROR_TOO_MANY_OPEN_FILES
    case EACCES:
    case EPERM:
    case EISDIR:
      return windows(5);  // ERROR_ACCESS_DENIED
    case EROFS:
      return windows(19);  // ERROR_WRITE_PROTECT
    case EBUSY:
    case ETXTBSY:
      return windows(32);  // ERROR_SHARING_VIOLATION
    case ENOSPC:
    case EDQUOT:
      return windows(112);  // ERROR_DISK_FULL
    case ENAMETOOLONG:
      return windows(206);  // ERROR_FILENAME_EXCED_RANGE
    case EFBIG:
      return windows(223);  // ERROR_FILE_TOO_LARGE
    case EIO:
      return windows(1117);  // ERROR_IO_DEVICE
    case ELOOP:
      return windows(1921);  // ERROR_CANT_RESOLVE_FILENAME
    case EINVAL:
      return E_INVALIDARG;
    case ENOMEM:
      return E_OUTOFMEMORY;
    default:
      return E_FAIL;
  }
}

bool Exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

// The path under which the system knows a name. A backslash is a legal character of a POSIX file
// name, so it counts as a separator only where the name as it stands does not exist.
std::string PathOf(TextView name) {
  if (auto path = PathOfFileAddress(name)) return *std::move(path);
  std::string path = ToUtf8(name);
  if (path.find('\\') != std::string::npos && !Exists(path))
    std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

class OpenFile {
 public:
  explicit OpenFile(int file) : file_(file) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (file_ >= 0) close(file_);
  }

  int Get() const { return file_; }
  int Detach() { return std::exchange(file_, -1); }

 private:
  int file_;
};

// A file that is being written beside the one it will replace; removed unless it took its place.
class TemporaryFile {
 public:
  TemporaryFile(const std::string& target, mode_t mode)
      : folder_(target.substr(0, target.rfind('/') + 1)), file_(Create(mode)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!path_.empty()) unlink(path_.c_str());
  }

  // The steps of a replacement, each giving 0 or the error number of the system.
  int KeepOwnerAndMode(const struct stat& old) {
    const FileCalls& calls = CurrentFileCalls();
    struct stat made;
    if (fstat(file_.Get(), &made) != 0) return errno;
    const bool moved = made.st_uid != old.st_uid || made.st_gid != old.st_gid;
    // Only a privileged process may give files away; for the others the group must do, which is
    // by what several users share a file.
    if (moved && calls.fchown(file_.Get(), old.st_uid, old.st_gid) != 0 &&
        (errno != EPERM || calls.fchown(file_.Get(), static_cast<uid_t>(-1), old.st_gid) != 0))
      return errno;
    return calls.fchmod(file_.Get(), old.st_mode & 07777) == 0 ? 0 : errno;
  }

  int Write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = CurrentFileCalls().write(file_.Get(), bytes.data(), bytes.size());
      if (written > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(written));
      } else if (written == 0) {
        return ENOSPC;
      } else if (errno != EINTR) {
        return errno;
      }
    }
    return 0;
  }

  int Flush() {
    if (CurrentFileCalls().fsync(file_.Get()) != 0) return errno;
    // Some network file systems report a failed write only here. The descriptor is gone in any
    // case.
    return CurrentFileCalls().close(file_.Detach()) == 0 ? 0 : errno;
  }

  int TakePlaceOf(const std::string& target) {
    if (CurrentFileCalls().rename(path_.c_str(), target.c_str()) != 0) return errno;
    path_.clear();
    // Makes the new name last through a power failure. The file is in place already, and some
    // file systems cannot do this, so a failure is none of the caller's.
    const OpenFile folder(
        open(folder_.empty() ? "." : folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Get() >= 0) CurrentFileCalls().fsync(folder.Get());
    return 0;
  }

  int CreationError() const { return file_.Get() >= 0 ? 0 : error_; }

 private:
  int Create(mode_t mode) {
    static std::atomic<unsigned> counter = 0;
    for (int attempt = 0; attempt < kMostNames; ++attempt) {
      std::array<char, 64> name;
      std::snprintf(name.data(), name.size(), ".sabxml-%ld-%u.tmp", static_cast<long>(getpid()),
                    counter++);
      path_ = folder_ + name.data();
      const int file = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (file >= 0) return file;
      error_ = errno;
      if (error_ != EEXIST) break;
    }
    path_.clear();
    return -1;
  }

  std::string folder_;
  std::string path_;
  int error_ = 0;
  OpenFile file_;
};

// Follows symbolic links to the file that is meant, which need not exist.
int FollowLinks(std::string& path) {
  for (int links = 0; links < kMostLinks; ++links) {
    std::array<char, PATH_MAX> link;
    const ssize_t length = readlink(path.c_str(), link.data(), link.size());
    if (length < 0) return 0;
    const std::string_view to(link.data(), static_cast<std::size_t>(length));
    if (to.starts_with('/')) path.clear();
    path.erase(path.rfind('/') + 1);
    path += to;
  }
  return ELOOP;
}

int Replace(std::string path, std::string_view bytes) {
  if (const int error = FollowLinks(path)) return error;
  struct stat old;
  const bool exists = stat(path.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return errno;
  if (exists && S_ISDIR(old.st_mode)) return EISDIR;
  if (exists && !S_ISREG(old.st_mode)) return EINVAL;
  // Renaming would get round the mode of a file that may not be written.
  if (exists && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return errno;

  // Until it has the mode of the old file nobody else may look into the new one.
  TemporaryFile file(path, exists ? 0600 : 0666);
  if (const int error = file.CreationError()) return error;
  if (const int error = file.Write(bytes)) return error;
  if (exists) {
    if (const int error = file.KeepOwnerAndMode(old)) return error;
  }
  if (const int error = file.Flush()) return error;
  return file.TakePlaceOf(path);
}

}  // namespace

FileCalls& CurrentFileCalls() {
  static FileCalls calls = {write, fchown, fchmod, fsync, close, rename};
  return calls;
}

std::optional<std::string> ReadFileBytes(TextView name, std::string& reason) {
  const auto refuse = [&reason](std::string why) -> std::optional<std::string> {
    reason = std::move(why);
    return std::nullopt;
  };
  if (const char* const against = ReasonAgainstName(name)) return refuse(against);
  // Without O_NONBLOCK opening a pipe that nobody writes to would never return.
  const OpenFile file(open(PathOf(name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.Get() < 0) return refuse(Words(errno));
  struct stat status;
  if (fstat(file.Get(), &status) != 0) return refuse(Words(errno));
  if (S_ISDIR(status.st_mode)) return refuse(Words(EISDIR));
  if (!S_ISREG(status.st_mode)) return refuse("not a regular file");

  // Room behind the end shows where it is without another allocation; the size of some files
  // (those of /proc) is only known there.
  if (status.st_size > static_cast<off_t>(kLargestFile)) return refuse(Words(EFBIG));
  std::string bytes(static_cast<std::size_t>(status.st_size) + kRoom, '\0');
  std::size_t size = 0;
  for (;;) {
    const ssize_t count = read(file.Get(), bytes.data() + size, bytes.size() - size);
    if (count == 0) break;
    if (count < 0) {
      if (errno == EINTR) continue;
      return refuse(Words(errno));
    }
    size += static_cast<std::size_t>(count);
    if (static_cast<off_t>(size) == status.st_size) break;
    if (size > kLargestFile) return refuse(Words(EFBIG));
    if (bytes.size() - size < kRoom / 2) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(size);
  return bytes;
}

bool FileExists(TextView name) { return !ReasonAgainstName(name) && Exists(PathOf(name)); }

void ReplaceFileBytes(TextView name, std::string_view bytes) {
  const std::string shown = "cannot write " + ToUtf8(name) + ": ";
  if (const char* const against = ReasonAgainstName(name))
    throw ComError(E_INVALIDARG, shown + against);
  if (const int error = Replace(PathOf(name), bytes))
    throw ComError(ResultOf(error), shown + Words(error));
}

}  // namespace sab
