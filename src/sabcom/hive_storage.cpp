#include "sabcom/hive_storage.h"

#include <fcntl.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace sabcom {
namespace {

constexpr int kMaxLinks = 40;
constexpr off_t kMaxHiveSize = off_t{64} << 20;
constexpr mode_t kNewMode = 0644;
constexpr long kLockAttempts = 10'000;
constexpr timespec kBetweenAttempts = {0, 1'000'000};

LSTATUS CodeOf(int error, LSTATUS otherwise) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return ERROR_ACCESS_DENIED;
    case ENOSPC:
    case EDQUOT:
      return ERROR_DISK_FULL;
    case ENOMEM:
      return ERROR_OUTOFMEMORY;
    default:
      return otherwise;
  }
}

[[noreturn]] void FailReading(const std::string& path, const std::string& reason) {
  throw HiveError{path + ": cannot read the registry: " + reason +
                  ". Mend it, or set SABCOM_REGISTRY to another file."};
}

[[noreturn]] void FailWriting(const std::string& path, const char* action, int error) {
  throw HiveError{path + ": cannot " + action +
                      " the registry: " + std::generic_category().message(error) +
                      ". Set SABCOM_REGISTRY to a file that you may write.",
                  CodeOf(error, ERROR_CANTWRITE)};
}

// A call that a signal may interrupt.
template <class Call>
auto Retried(const Call& call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (value_ >= 0) close(value_);
  }
  int Get() const { return value_; }
  // What was flushed is on the disk; an interruption does not change that.
  bool Close() { return close(std::exchange(value_, -1)) == 0 || errno == EINTR; }

 private:
  int value_;
};

// A file that is gone again unless it is kept.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& path) : path_(path) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!is_kept_) unlink(path_.c_str());
  }
  void Keep() { is_kept_ = true; }

 private:
  const std::string& path_;
  bool is_kept_ = false;
};

FileIdentity IdentityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

bool IsSame(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool IsMissing(int error) { return error == ENOENT || error == ENOTDIR; }

// Whoever may write the registry chooses the libraries that are loaded into this process.
void CheckTrust(const std::string& path, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) FailReading(path, "it is a directory");
  if (!S_ISREG(status.st_mode)) FailReading(path, "it is not a regular file");
  if (status.st_mode & S_IWOTH) {
    FailReading(path,
                "every user may write it, so the libraries that it names cannot be trusted "
                "(take the right away with chmod o-w)");
  }
  if (status.st_uid != geteuid() && status.st_uid != 0) {
    FailReading(path, "it belongs to another user (number " + std::to_string(status.st_uid) +
                          "), so the libraries that it names cannot be trusted");
  }
  if (status.st_size > kMaxHiveSize) FailReading(path, "it is larger than 64 MB");
}

std::string FolderOf(const std::string& path) {
  const std::size_t end = path.rfind('/');
  return end == std::string::npos ? "." : path.substr(0, end + 1);
}

// The file that is meant, which need not exist.
std::string AfterLinks(std::string path) {
  for (int links = 0; links < kMaxLinks; ++links) {
    std::array<char, PATH_MAX> link;
    const ssize_t length = readlink(path.c_str(), link.data(), link.size());
    if (length < 0 && (errno == EINVAL || IsMissing(errno))) return path;
    if (length < 0) FailWriting(path, "find", errno);
    const std::string_view to(link.data(), static_cast<std::size_t>(length));
    if (to.starts_with('/')) path.clear();
    path.erase(path.rfind('/') + 1);
    path += to;
  }
  FailWriting(path, "find", ELOOP);
}

void WriteAll(int file, std::string_view text, const std::string& path) {
  while (!text.empty()) {
    const ssize_t written = Retried([&] { return write(file, text.data(), text.size()); });
    if (written <= 0) FailWriting(path, "write", written == 0 ? ENOSPC : errno);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Only root may give files away; for the others the group must do.
void KeepOwnerAndMode(int file, const struct stat& old, const std::string& path) {
  struct stat made {};
  if (fstat(file, &made) != 0) FailWriting(path, "write", errno);
  const bool differs = made.st_uid != old.st_uid || made.st_gid != old.st_gid;
  if (differs && fchown(file, old.st_uid, old.st_gid) != 0 &&
      (errno != EPERM || fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0)) {
    FailWriting(path, "keep the owner of", errno);
  }
  if (fchmod(file, old.st_mode & 07777) != 0) FailWriting(path, "keep the mode of", errno);
}

}  // namespace

bool FileIdentity::operator==(const FileIdentity& other) const {
  return device == other.device && inode == other.inode && size == other.size &&
         IsSame(modified, other.modified) && IsSame(changed, other.changed);
}

std::string HivePath() {
  if (const char* const given = secure_getenv("SABCOM_REGISTRY"); given && *given) return given;
  std::string folder;
  if (const char* const data = secure_getenv("XDG_DATA_HOME"); data && *data == '/') {
    folder = data;
  } else if (const char* const home = secure_getenv("HOME"); home && *home) {
    folder = std::string(home) + "/.local/share";
  } else {
    throw HiveError{"There is no place for the registry: set SABCOM_REGISTRY or HOME."};
  }
  return folder + "/sabcom/registry.reg";
}

FileIdentity IdentifyHive(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return IdentityOf(status);
  if (!IsMissing(errno)) FailReading(path, std::generic_category().message(errno));
  return {};
}

std::optional<std::string> ReadHive(const std::string& path, FileIdentity& identity) {
  const auto fail = [&path](int error) {
    FailReading(path, std::generic_category().message(error));
  };
  identity = {};
  // Without O_NONBLOCK opening a pipe without a writer would never return.
  const Descriptor file(
      Retried([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
  if (file.Get() < 0 && IsMissing(errno)) return std::nullopt;
  if (file.Get() < 0) fail(errno);
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) fail(errno);
  CheckTrust(path, status);
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  for (std::size_t size = 0; size < text.size();) {
    const ssize_t count =
        Retried([&] { return read(file.Get(), text.data() + size, text.size() - size); });
    if (count < 0) fail(errno);
    if (count == 0) FailReading(path, "it has become shorter meanwhile");
    size += static_cast<std::size_t>(count);
  }
  identity = IdentityOf(status);
  return text;
}

HiveLock::HiveLock(const std::string& path) : target_(AfterLinks(path)) {
  std::error_code ignored;  // opening the lock reports it
  std::filesystem::create_directories(FolderOf(target_), ignored);
  const std::string name = target_ + ".lock";
  constexpr int kFlags = O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  const auto open_lock = [&name](int access) {
    return Retried([&] { return open(name.c_str(), kFlags | access, kNewMode); });
  };
  file_ = open_lock(O_RDWR);
  // That of another user; reading is enough where files are not on another machine.
  if (file_ < 0 && errno == EACCES) file_ = open_lock(O_RDONLY);
  if (file_ < 0) FailWriting(name, "lock", errno);
  for (long attempt = 0; flock(file_, LOCK_EX | LOCK_NB) != 0; ++attempt) {
    const int error = errno;
    if (error == EINTR) continue;
    if (error == EWOULDBLOCK && attempt < kLockAttempts) {
      nanosleep(&kBetweenAttempts, nullptr);
      continue;
    }
    close(file_);
    if (error != EWOULDBLOCK) FailWriting(name, "lock", error);
    throw HiveError{name +
                        ": another process has been writing the registry for ten seconds. "
                        "End it, or try again.",
                    ERROR_SHARING_VIOLATION};
  }
}

HiveLock::~HiveLock() { close(file_); }

void HiveLock::Replace(std::string_view text) const {
  struct stat old {};
  const bool exists = stat(target_.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) FailWriting(target_, "write", errno);
  // Renaming would bypass the mode of a file that may not be written.
  if (exists && faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) {
    FailWriting(target_, "write", errno);
  }
  const std::string name = target_ + ".new";
  const std::string folder_name = FolderOf(target_);  // nothing may fail after renaming
  // Under the lock, a file of this name was left by a process that was killed.
  if (unlink(name.c_str()) != 0 && errno != ENOENT) FailWriting(name, "write", errno);
  Descriptor file(Retried([&] {
    return open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                exists ? 0600 : kNewMode);
  }));
  if (file.Get() < 0) FailWriting(name, "write", errno);
  TemporaryFile temporary(name);
  WriteAll(file.Get(), text, name);
  if (exists) KeepOwnerAndMode(file.Get(), old, name);
  if (Retried([&] { return fsync(file.Get()); }) != 0) FailWriting(name, "write", errno);
  if (!file.Close()) FailWriting(name, "write", errno);
  if (rename(name.c_str(), target_.c_str()) != 0) FailWriting(target_, "replace", errno);
  temporary.Keep();
  // Makes the new name last through a power failure. The file is in place already, and some file
  // systems cannot do this, so a failure is none of the caller's.
  const Descriptor folder(open(folder_name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.Get() >= 0) fsync(folder.Get());
}

}  // namespace sabcom
