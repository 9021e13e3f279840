#include "platform/file_lock.h"

#include "base/com_error.h"
#include "platform/file.h"
#include "platform/file_name.h"
#include "system_file.h"

namespace sab {
namespace {

// Ten seconds, in steps.
constexpr int kMaxWaits = 5000;
constexpr DWORD kWait = 2;
// While a file that is being deleted is still open, access is denied to all. The system's own
// denial does not pass, so it is not waited for so long.
constexpr int kMaxDenials = 100;

constexpr wchar_t kEnd[] = L".sabxml-lock";

}  // namespace

// A handle of the file itself would prevent replacing it, so another file represents it, open for
// one process alone. The system deletes it with its last handle, also where a process is killed.
FileLock::FileLock(TextView name) {
  if (ReasonAgainstName(name)) return;
  const Text path = PathOf(name);
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return;
  // A file that is missing may just be replaced: ReplaceFileW does that in two steps.
  if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_FILE_NOT_FOUND) return;
  const Text lock = FinalPathOf(path) + kEnd;
  DWORD error = ERROR_SHARING_VIOLATION;
  int denials = 0;
  for (int waits = 0; waits < kMaxWaits && denials < kMaxDenials; ++waits) {
    const HANDLE file = CreateFileW(lock.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      file_ = reinterpret_cast<std::intptr_t>(file);
      return;
    }
    error = GetLastError();
    if (error == ERROR_ACCESS_DENIED) {
      ++denials;
    } else if (error != ERROR_SHARING_VIOLATION) {
      break;
    }
    Sleep(kWait);
  }
  const std::string shown = "cannot write " + ToUtf8(name) + ": ";
  if (error == ERROR_SHARING_VIOLATION)
    throw ComError(HRESULT_FROM_WIN32(ERROR_LOCK_VIOLATION),
                   shown +
                       "another program has been saving it for ten seconds; nothing was changed, "
                       "try again");
  throw ComError(HRESULT_FROM_WIN32(error), shown + Words(error));
}

std::optional<std::string> FileLock::ReadBytes(TextView name, std::string& reason) const {
  return ReadFileBytes(name, reason);
}

FileLock::~FileLock() {
  if (file_ != kNone) CloseHandle(reinterpret_cast<HANDLE>(file_));
}

}  // namespace sab
