#include "platform/file.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cwchar>
#include <string>
#include <utility>

#include "platform/file_change.h"
#include "platform/file_name.h"
#include "system_file.h"

namespace sab {
namespace {

constexpr int kMaxNameAttempts = 1000;
constexpr int kMaxAttempts = 250;
constexpr DWORD kWait = 2;
constexpr wchar_t kTemporaryStart[] = L"sabxml-";
constexpr wchar_t kTemporaryEnd[] = L".tmp";
constexpr std::size_t kPadding = 16;
constexpr DWORD kMaxStep = 1U << 26;

Text FolderOf(const Text& path) { return path.substr(0, path.find_last_of(L"\\/:") + 1); }

bool IsRunning(DWORD process) {
  const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, process);
  if (!handle) return GetLastError() == ERROR_ACCESS_DENIED;
  const bool is_running = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
  CloseHandle(handle);
  return is_running;
}

// What a killed writer leaves: its process has ended. Removing it is optional: no failure here is
// the caller's. The file of a writer on another machine is open and cannot be removed.
void RemoveAbandonedFiles(const Text& folder) {
  WIN32_FIND_DATAW entry;
  Text path = folder + kTemporaryStart + L'*' + kTemporaryEnd;
  path.reserve(folder.size() + MAX_PATH);  // nothing raises where a handle is open
  const HANDLE entries = FindFirstFileW(path.c_str(), &entry);
  if (entries == INVALID_HANDLE_VALUE) return;
  do {
    const DWORD process = std::wcstoul(entry.cFileName + std::wcslen(kTemporaryStart), nullptr, 10);
    path.replace(folder.size(), Text::npos, entry.cFileName);
    if (process != 0 && !IsRunning(process)) DeleteFileW(path.c_str());
  } while (FindNextFileW(entries, &entry));
  FindClose(entries);
}

// A file that is being written beside the one it will replace; removed unless it took its place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Text& target) : path_(FolderOf(target)), file_(Create()) {}
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
      const auto step = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kMaxStep));
      DWORD written = 0;
      if (!WriteFile(file_.Get(), bytes.data(), step, &written, nullptr)) return GetLastError();
      if (written == 0) return ERROR_DISK_FULL;
      bytes.remove_prefix(written);
    }
    if (!FlushFileBuffers(file_.Get()) || !file_.Close()) return GetLastError();
    return 0;
  }

  DWORD TakePlaceOf(const Text& target, bool exists) {
    for (int attempt = 0;; ++attempt) {
      // ReplaceFileW keeps attributes, access list and creation time of the old file.
      const BOOL done = exists ? ReplaceFileW(target.c_str(), path_.c_str(), nullptr,
                                              REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)
                               : MoveFileExW(path_.c_str(), target.c_str(),
                                             MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
      if (done) break;
      const DWORD error = GetLastError();
      // The old file has gone then, and the new one must take its name.
      const bool is_half_done = error == ERROR_UNABLE_TO_MOVE_REPLACEMENT;
      // Whoever reads the old file will soon be ready.
      const bool is_open =
          error == ERROR_SHARING_VIOLATION || error == ERROR_UNABLE_TO_REMOVE_REPLACED;
      if (attempt == kMaxAttempts || (!is_half_done && !is_open)) return error;
      if (is_half_done) exists = false;
      Sleep(kWait);
    }
    path_.clear();
    return 0;
  }

 private:
  HANDLE Create() {
    static std::atomic<DWORD> counter = GetTickCount();
    const Text folder = path_;
    for (int attempt = 0; attempt < kMaxNameAttempts; ++attempt) {
      path_ = folder + kTemporaryStart + std::to_wstring(GetCurrentProcessId()) + L'-' +
              std::to_wstring(counter++) + kTemporaryEnd;
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

// The file that is to be replaced.
struct Target {
  Text path;
  bool exists = false;

  DWORD Find() {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (!exists && GetLastError() != ERROR_FILE_NOT_FOUND) return GetLastError();
    if (exists && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
      return ERROR_ACCESS_DENIED;
    path = FinalPathOf(std::move(path));
    return 0;
  }
};

DWORD CheckAccess(const Target& target) {
  if (!target.exists) return 0;
  const OpenFile file(CreateFileW(target.path.c_str(), GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
  return file.IsOpen() ? 0 : GetLastError();
}

DWORD Replace(const Target& target, std::string_view bytes) {
  RemoveAbandonedFiles(FolderOf(target.path));
  TemporaryFile file(target.path);
  if (const DWORD error = file.CreationError()) return error;
  if (const DWORD error = file.WriteAndFlush(bytes)) return error;
  return file.TakePlaceOf(target.path, target.exists);
}

}  // namespace

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

Text FinalPathOf(Text path) {
  const OpenFile file(CreateFileW(path.c_str(), 0,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
  if (file.IsOpen()) {
    const DWORD size = GetFinalPathNameByHandleW(file.Get(), nullptr, 0, FILE_NAME_NORMALIZED);
    Text target(size, L'\0');
    const DWORD length =
        GetFinalPathNameByHandleW(file.Get(), target.data(), size, FILE_NAME_NORMALIZED);
    if (length != 0 && length < size) {
      target.resize(length);
      return target;
    }
  }
  const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  Text full(size, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) return path;
  full.resize(length);
  return full;
}

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
  if (file_size.QuadPart > static_cast<LONGLONG>(kMaxFileSize))
    return refuse(Words(ERROR_FILE_TOO_LARGE));
  const auto capacity = static_cast<std::size_t>(file_size.QuadPart);
  std::string bytes;
  bytes.reserve(capacity + kPadding);
  bytes.resize(capacity);
  std::size_t size = 0;
  while (size < capacity) {
    const auto step = static_cast<DWORD>(std::min<std::size_t>(capacity - size, kMaxStep));
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

void CheckReplaceable(TextView name) { ChangeFile<Target>(name, CheckAccess); }

void ReplaceFileBytes(TextView name, std::string_view bytes) {
  ChangeFile<Target>(name, [bytes](const Target& target) { return Replace(target, bytes); });
}

}  // namespace sab
