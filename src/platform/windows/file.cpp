#include "platform/file.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <utility>

#include "base/com_error.h"
#include "platform/file_name.h"

namespace sab {
namespace {

constexpr int kMostNames = 1000;
constexpr std::size_t kRoom = 16;
constexpr DWORD kLargestStep = 1U << 26;

std::string Words(DWORD error) {
  std::array<wchar_t, 512> words;
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                error, 0, words.data(), static_cast<DWORD>(words.size()), nullptr);
  while (length > 0 && (words[length - 1] <= L' ' || words[length - 1] == L'.')) --length;
  if (length == 0) return "error " + std::to_string(error);
  return ToUtf8(TextView(words.data(), length));
}

Text PathOf(TextView name) {
  const auto address = PathOfFileAddress(name);
  if (!address) return Text(name);
  Text path = FromUtf8(*address);
  // "/C:/folder/file"
  if (path.size() > 2 && path[0] == L'/' && path[2] == L':') path.erase(0, 1);
  return path;
}

class OpenFile {
 public:
  explicit OpenFile(HANDLE file) : file_(file) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { Close(); }

  HANDLE Get() const { return file_; }
  bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }
  bool Close() { return !IsOpen() || CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE)) != 0; }

 private:
  HANDLE file_;
};

// ReplaceFileW of Wine takes no name without a folder. A path that has no full form stays.
Text FullPathOf(const Text& path) {
  const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  Text full(size, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) return path;
  full.resize(length);
  return full;
}

// Leads from a symbolic link or junction to the file that is meant; other paths stay as they are.
void FollowLinks(Text& path, DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return;
  const OpenFile file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
  if (!file.IsOpen()) return;
  const DWORD size = GetFinalPathNameByHandleW(file.Get(), nullptr, 0, FILE_NAME_NORMALIZED);
  Text target(size, L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(file.Get(), target.data(), size, FILE_NAME_NORMALIZED);
  if (length == 0 || length >= size) return;
  target.resize(length);
  path = std::move(target);
}

// A file that is being written beside the one it will replace; removed unless it took its place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Text& target)
      : path_(target.substr(0, target.find_last_of(L"\\/:") + 1)), file_(Create()) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    file_.Close();
    if (!path_.empty()) DeleteFileW(path_.c_str());
  }

  DWORD CreationError() const { return file_.IsOpen() ? 0 : error_; }

  // The steps of a replacement, each giving 0 or the error number of the system.
  DWORD WriteAndFlush(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto step = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kLargestStep));
      DWORD written = 0;
      if (!WriteFile(file_.Get(), bytes.data(), step, &written, nullptr)) return GetLastError();
      if (written == 0) return ERROR_DISK_FULL;
      bytes.remove_prefix(written);
    }
    if (!FlushFileBuffers(file_.Get()) || !file_.Close()) return GetLastError();
    return 0;
  }

  DWORD TakePlaceOf(const Text& target, bool exists) {
    // ReplaceFileW keeps attributes, access list and creation time of the old file.
    const BOOL done = exists ? ReplaceFileW(target.c_str(), path_.c_str(), nullptr,
                                            REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)
                             : MoveFileExW(path_.c_str(), target.c_str(),
                                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    if (!done) return GetLastError();
    path_.clear();
    return 0;
  }

 private:
  HANDLE Create() {
    static std::atomic<unsigned> counter = 0;
    const Text folder = path_;
    for (int attempt = 0; attempt < kMostNames; ++attempt) {
      std::array<wchar_t, 64> name;
      std::swprintf(name.data(), name.size(), L"sabxml-%lu-%u.tmp", GetCurrentProcessId(),
                    counter++);
      path_ = folder + name.data();
      const HANDLE file = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
      if (file != INVALID_HANDLE_VALUE) return file;
      error_ = GetLastError();
      if (error_ != ERROR_FILE_EXISTS) break;
    }
    path_.clear();
    return INVALID_HANDLE_VALUE;
  }

  Text path_;
  DWORD error_ = 0;
  OpenFile file_;
};

DWORD Replace(Text path, std::string_view bytes) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (exists) {
    if (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY))
      return ERROR_ACCESS_DENIED;
    FollowLinks(path, attributes);
  } else if (GetLastError() != ERROR_FILE_NOT_FOUND) {
    return GetLastError();
  }
  path = FullPathOf(path);
  TemporaryFile file(path);
  if (const DWORD error = file.CreationError()) return error;
  if (const DWORD error = file.WriteAndFlush(bytes)) return error;
  return file.TakePlaceOf(path, exists);
}

}  // namespace

std::optional<std::string> ReadFileBytes(TextView name, std::string& reason) {
  const auto refuse = [&reason](std::string why) -> std::optional<std::string> {
    reason = std::move(why);
    return std::nullopt;
  };
  if (const char* const against = ReasonAgainstName(name)) return refuse(against);
  const OpenFile file(CreateFileW(PathOf(name).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file.IsOpen()) return refuse(Words(GetLastError()));
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) return refuse("not a regular file");
  LARGE_INTEGER file_size;
  if (!GetFileSizeEx(file.Get(), &file_size)) return refuse(Words(GetLastError()));
  if (file_size.QuadPart > static_cast<LONGLONG>(kLargestFile))
    return refuse(Words(ERROR_FILE_TOO_LARGE));
  const auto capacity = static_cast<std::size_t>(file_size.QuadPart);
  std::string bytes;
  bytes.reserve(capacity + kRoom);
  bytes.resize(capacity);
  std::size_t size = 0;
  while (size < capacity) {
    const auto step = static_cast<DWORD>(std::min<std::size_t>(capacity - size, kLargestStep));
    DWORD count = 0;
    if (!ReadFile(file.Get(), bytes.data() + size, step, &count, nullptr))
      return refuse(Words(GetLastError()));
    if (count == 0) break;
    size += count;
  }
  bytes.resize(size);
  return bytes;
}

bool FileExists(TextView name) {
  return !ReasonAgainstName(name) &&
         GetFileAttributesW(PathOf(name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

void ReplaceFileBytes(TextView name, std::string_view bytes) {
  const std::string shown = "cannot write " + ToUtf8(name) + ": ";
  if (const char* const against = ReasonAgainstName(name))
    throw ComError(E_INVALIDARG, shown + against);
  if (const DWORD error = Replace(PathOf(name), bytes))
    throw ComError(HRESULT_FROM_WIN32(error), shown + Words(error));
}

}  // namespace sab
