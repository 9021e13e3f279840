#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/file_name.h"
#include "system_file.h"

namespace sab {
namespace {

constexpr std::size_t kExtraCapacity = 4096;

bool Exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

}  // namespace

std::string Words(int error) { return std::generic_category().message(error); }

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

std::string PathOf(TextView name) {
  if (auto path = PathOfFileAddress(name)) return *std::move(path);
  std::string path = ToUtf8(name);
  if (path.find('\\') != std::string::npos && !Exists(path))
    std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

int OpenWithoutWaiting(const char* path, int flags) {
  for (;;) {
    const int file = open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file >= 0 || errno != EINTR) return file;
  }
}

std::optional<std::string> ReadFileBytes(TextView name, std::string& reason) {
  const auto refuse = [&reason](std::string why) -> std::optional<std::string> {
    reason = std::move(why);
    return std::nullopt;
  };
  if (const char* const against = ReasonAgainstName(name)) return refuse(against);
  const OpenFile file(OpenWithoutWaiting(PathOf(name).c_str(), O_RDONLY));
  if (file.Get() < 0) return refuse(Words(errno));
  return ReadBytes(file.Get(), reason);
}

std::optional<std::string> ReadBytes(int file, std::string& reason) {
  const auto refuse = [&reason](std::string why) -> std::optional<std::string> {
    reason = std::move(why);
    return std::nullopt;
  };
  struct stat status;
  if (fstat(file, &status) != 0) return refuse(Words(errno));
  if (S_ISDIR(status.st_mode)) return refuse(Words(EISDIR));
  if (!S_ISREG(status.st_mode)) return refuse("not a regular file");

  // Spare capacity shows where the end is without another allocation; the size of some files
  // (those of /proc) is only known there.
  if (status.st_size > static_cast<off_t>(kMaxFileSize)) return refuse(Words(EFBIG));
  std::string bytes(static_cast<std::size_t>(status.st_size) + kExtraCapacity, '\0');
  std::size_t size = 0;
  for (;;) {
    const ssize_t count = read(file, bytes.data() + size, bytes.size() - size);
    if (count == 0) break;
    if (count < 0) {
      if (errno == EINTR) continue;
      return refuse(Words(errno));
    }
    size += static_cast<std::size_t>(count);
    if (static_cast<off_t>(size) == status.st_size) break;
    if (size > kMaxFileSize) return refuse(Words(EFBIG));
    if (bytes.size() - size < kExtraCapacity / 2) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(size);
  return bytes;
}

bool FileExists(TextView name) { return !ReasonAgainstName(name) && Exists(PathOf(name)); }

}  // namespace sab
