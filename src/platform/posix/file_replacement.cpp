#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <atomic>
#include <chrono>
#include <climits>
#include <ctime>
#include <mutex>

#include "platform/file.h"
#include "platform/file_change.h"
#include "system_file.h"

namespace sab {
namespace {

constexpr int kMaxLinks = 40;
constexpr int kMaxNameAttempts = 1000;
constexpr std::string_view kTemporaryStart = ".sabxml-";
constexpr std::string_view kTemporaryEnd = ".tmp";

bool IsTemporaryName(std::string_view name) {
  return name.starts_with(kTemporaryStart) && name.ends_with(kTemporaryEnd);
}

// The folder of the last replacement, as it was then: without abandoned files. A look at its time
// spares reading a folder in which no other process has changed anything.
class TidyFolder {
 public:
  bool Is(const struct stat& folder) const {
    const std::lock_guard guard(mutex_);
    return folder.st_dev == folder_.st_dev && folder.st_ino == folder_.st_ino &&
           IsSame(folder.st_mtim, folder_.st_mtim);
  }
  void Remember(int folder) {
    const std::lock_guard guard(mutex_);
    timespec tick;
    // A time later than the last tick of the clock is no tick's: the system gives the next change
    // another one. Elsewhere two changes between ticks look alike.
    if (fstat(folder, &folder_) != 0 || clock_gettime(CLOCK_REALTIME_COARSE, &tick) != 0 ||
        !IsLater(folder_.st_mtim, tick))
      folder_ = {};
  }

 private:
  static bool IsSame(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
  }
  static bool IsLater(const timespec& a, const timespec& b) {
    return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
  }

  mutable std::mutex mutex_;
  struct stat folder_ = {};
};

// What a killed writer leaves is not locked, unlike the file of one that is still running. Removing
// it is optional: no failure here is the caller's.
void RemoveIfAbandoned(int folder, const char* name) {
  const OpenFile file(
      openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status;
  if (file.Get() >= 0 && fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode) &&
      TryLock(file.Get()) == 0)
    unlinkat(folder, name, 0);
}

// @return whether the folder has no temporary file, and so none that may be abandoned later
bool RemoveAbandonedFiles(int folder) {
  bool is_tidy = true;
  alignas(dirent64) std::array<char, 1U << 14> entries;
  for (;;) {
    const ssize_t size = getdents64(folder, entries.data(), entries.size());
    if (size <= 0) return is_tidy && size == 0;
    for (ssize_t i = 0; i < size;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(entries.data() + i);
      i += entry->d_reclen;
      if (!IsTemporaryName(entry->d_name)) continue;
      RemoveIfAbandoned(folder, entry->d_name);
      is_tidy = false;
    }
  }
}

// An attribute beside owner, mode and times. What the system alone may set comes with the folder.
bool MustBeKept(std::string_view attribute) {
  return attribute.starts_with("user.") || attribute == "system.posix_acl_access";
}

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
    const bool moved = status_.st_uid != old.st_uid || status_.st_gid != old.st_gid;
    // Only a privileged process may give files away; for the others the group must do, which is
    // by what several users share a file.
    if (moved && fchown(file_.Get(), old.st_uid, old.st_gid) != 0 &&
        (errno != EPERM || fchown(file_.Get(), static_cast<uid_t>(-1), old.st_gid) != 0))
      return errno;
    return fchmod(file_.Get(), old.st_mode & 07777) == 0 ? 0 : errno;
  }

  // Access lists and what programs of the user have attached.
  int KeepAttributes(const std::string& old) {
    const ssize_t size = listxattr(old.c_str(), nullptr, 0);
    if (size <= 0) return size == 0 || errno == ENOTSUP ? 0 : errno;
    std::string names(static_cast<std::size_t>(size), '\0');
    const ssize_t length = listxattr(old.c_str(), names.data(), names.size());
    if (length < 0) return errno;
    names.resize(static_cast<std::size_t>(length));
    for (std::size_t i = 0; i < names.size(); i = names.find('\0', i) + 1) {
      const char* const name = names.c_str() + i;
      if (!MustBeKept(name)) continue;
      std::array<char, 1U << 16> value;  // the most that the system has
      const ssize_t count = getxattr(old.c_str(), name, value.data(), value.size());
      if (count < 0 ||
          fsetxattr(file_.Get(), name, value.data(), static_cast<std::size_t>(count), 0) != 0)
        return errno;
    }
    return 0;
  }

  int Write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = write(file_.Get(), bytes.data(), bytes.size());
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

  // It stays open, and so locked, until it has its name.
  int Flush() {
    while (fsync(file_.Get()) != 0) {
      if (errno != EINTR) return errno;
    }
    return 0;
  }

  int TakePlaceOf(const std::string& target) {
    if (rename(path_.c_str(), target.c_str()) != 0) return errno;
    path_.clear();
    return 0;
  }

  int CreationError() const { return error_; }

 private:
  int Create(mode_t mode) {
    static std::atomic<unsigned> counter =
        static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count());
    for (int attempt = 0; attempt < kMaxNameAttempts; ++attempt) {
      path_ = folder_ + std::string(kTemporaryStart) + std::to_string(getpid()) + '-' +
              std::to_string(counter++) + std::string(kTemporaryEnd);
      OpenFile file(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
      error_ = file.Get() >= 0 ? 0 : errno;
      if (error_ == EEXIST || error_ == EINTR) continue;
      if (error_ != 0) break;
      error_ = TryLock(file.Get());
      if (HasNoLocks(error_)) error_ = 0;
      if (fstat(file.Get(), &status_) != 0) error_ = errno;
      // Before it was locked another writer may have taken it for abandoned.
      if (error_ == 0 && status_.st_nlink == 0) error_ = EAGAIN;
      if (error_ == 0) return file.Detach();
      unlink(path_.c_str());
      if (error_ != EAGAIN) break;
    }
    path_.clear();
    return -1;
  }

  std::string folder_;
  std::string path_;
  int error_ = 0;
  struct stat status_ = {};
  OpenFile file_;
};

// The file that is to be replaced.
struct Target {
  std::string path;
  bool exists = false;
  struct stat status = {};

  std::string Folder() const {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
  }

  int Find();

 private:
  int FollowLinks();
};

// Follows symbolic links to the file that is meant, which need not exist.
int Target::FollowLinks() {
  for (int links = 0; links < kMaxLinks; ++links) {
    exists = lstat(path.c_str(), &status) == 0;
    if (!exists) return errno == ENOENT ? 0 : errno;
    if (!S_ISLNK(status.st_mode)) return 0;
    std::array<char, PATH_MAX> link;
    const ssize_t length = readlink(path.c_str(), link.data(), link.size());
    if (length < 0) return errno;
    const std::string_view to(link.data(), static_cast<std::size_t>(length));
    if (to.starts_with('/')) path.clear();
    path.erase(path.rfind('/') + 1);
    path += to;
  }
  return ELOOP;
}

int Target::Find() {
  if (const int error = FollowLinks()) return error;
  if (!exists) return 0;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  if (!S_ISREG(status.st_mode)) return EINVAL;
  // Renaming would bypass the mode of a file that may not be written.
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 ? 0 : errno;
}

int CheckFolder(const Target& target) {
  return faccessat(AT_FDCWD, target.Folder().c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

int Replace(const Target& target, std::string_view bytes) {
  const OpenFile folder(open(target.Folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  static TidyFolder tidy_folder;
  struct stat status;
  const bool is_tidy = folder.Get() >= 0 && fstat(folder.Get(), &status) == 0 &&
                       (tidy_folder.Is(status) || RemoveAbandonedFiles(folder.Get()));
  // Until it has the mode of the old file no other user may read the new one.
  TemporaryFile file(target.path, target.exists ? 0600 : 0666);
  if (const int error = file.CreationError()) return error;
  if (const int error = file.Write(bytes)) return error;
  if (target.exists) {
    if (const int error = file.KeepAttributes(target.path)) return error;
    if (const int error = file.KeepOwnerAndMode(target.status)) return error;
  }
  if (const int error = file.Flush()) return error;
  if (const int error = file.TakePlaceOf(target.path)) return error;
  // Makes the new name last through a power failure. The file is in place already, and some file
  // systems cannot do this, so a failure is not reported.
  if (folder.Get() >= 0) fsync(folder.Get());
  if (is_tidy) tidy_folder.Remember(folder.Get());
  return 0;
}

}  // namespace

void CheckReplaceable(TextView name) { ChangeFile<Target>(name, CheckFolder); }

void ReplaceFileBytes(TextView name, std::string_view bytes) {
  ChangeFile<Target>(name, [bytes](const Target& target) { return Replace(target, bytes); });
}

}  // namespace sab
