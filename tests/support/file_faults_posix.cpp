#include "support/file_faults.h"

#include <dirent.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <type_traits>

#include "support/open_descriptors.h"

// The functions below take the place of the C library's: what is defined in the executable comes
// first, for the libraries that it loads as well.

namespace {

// What happens to a file call in place of its work.
struct FileFault {
  const char* name;
  int error;             // the call does nothing and fails with it; 0 for none
  std::size_t most = 0;  // without an error: read and write transfer no more bytes than this
};

constexpr long kNever = -1;
constexpr FileFault kFileFaults[] = {{"EIO", EIO},     {"ENOSPC", ENOSPC}, {"EACCES", EACCES},
                                     {"EINTR", EINTR}, {"short", 0, 1},    {"nothing written", 0}};
constexpr FileFault kKill = {"kill", 0};

// Calls until one goes wrong.
std::atomic<long> calls_until_fault = kNever;
const FileFault* planned = nullptr;
const char* struck_call = nullptr;

// What happens to this call: null for nothing.
const FileFault* FaultOf(const char* name) {
  if (calls_until_fault == kNever || calls_until_fault-- > 0) return nullptr;
  calls_until_fault = kNever;
  struck_call = name;
  return planned;
}

template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <class Result, class... Parameters>
Result Call(const char* name, Parameters... parameters) {
  using Function = Result(Parameters...);
  const FileFault* const fault = FaultOf(name);
  if (fault == &kKill) raise(SIGKILL);
  if (!fault || fault->error == 0) return Next<Function>(name)(parameters...);
  errno = fault->error;
  if constexpr (std::is_pointer_v<Result>) {
    return nullptr;
  } else {
    return -1;
  }
}

}  // namespace

#define SAB_EXPORT extern "C" __attribute__((visibility("default")))
// Arguments after the last named one travel alike whether or not a function declares them.
#define SAB_FILE_CALL(result, name, parameters, ...)         \
  SAB_EXPORT result Faulty_##name parameters __asm__(#name); \
  result Faulty_##name parameters { return Call<result>(#name, __VA_ARGS__); }

SAB_FILE_CALL(int, open, (const char* path, int flags, mode_t mode), path, flags, mode)
SAB_FILE_CALL(int, openat, (int folder, const char* path, int flags, mode_t mode), folder, path,
              flags, mode)
SAB_FILE_CALL(int, stat, (const char* path, struct stat* status), path, status)
SAB_FILE_CALL(int, lstat, (const char* path, struct stat* status), path, status)
SAB_FILE_CALL(int, fstat, (int file, struct stat* status), file, status)
SAB_FILE_CALL(int, faccessat, (int folder, const char* path, int mode, int flags), folder, path,
              mode, flags)
SAB_FILE_CALL(ssize_t, readlink, (const char* path, char* to, std::size_t size), path, to, size)
SAB_FILE_CALL(char*, realpath, (const char* path, char* to), path, to)
SAB_FILE_CALL(int, mkdir, (const char* path, mode_t mode), path, mode)
SAB_FILE_CALL(DIR*, opendir, (const char* path), path)
SAB_FILE_CALL(dirent*, readdir, (DIR * folder), folder)
SAB_FILE_CALL(int, flock, (int file, int operation), file, operation)
SAB_FILE_CALL(int, fcntl, (int file, int command, void* argument), file, command, argument)
SAB_FILE_CALL(int, fchown, (int file, uid_t owner, gid_t group), file, owner, group)
SAB_FILE_CALL(int, fchmod, (int file, mode_t mode), file, mode)
SAB_FILE_CALL(int, ftruncate, (int file, off_t size), file, size)
SAB_FILE_CALL(int, fsync, (int file), file)
SAB_FILE_CALL(int, rename, (const char* from, const char* to), from, to)
SAB_FILE_CALL(int, link, (const char* from, const char* to), from, to)
SAB_FILE_CALL(int, unlink, (const char* path), path)

SAB_EXPORT ssize_t FaultyRead(int file, void* bytes, std::size_t count) __asm__("read");
SAB_EXPORT ssize_t FaultyWrite(int file, const void* bytes, std::size_t count) __asm__("write");
SAB_EXPORT int FaultyClose(int file) __asm__("close");

ssize_t FaultyRead(int file, void* bytes, std::size_t count) {
  const FileFault* const fault = FaultOf("read");
  if (fault == &kKill) raise(SIGKILL);
  if (fault && fault->error != 0) {
    errno = fault->error;
    return -1;
  }
  if (fault && fault->most > 0) count = std::min(count, fault->most);
  return Next<decltype(FaultyRead)>("read")(file, bytes, count);
}

ssize_t FaultyWrite(int file, const void* bytes, std::size_t count) {
  const FileFault* const fault = FaultOf("write");
  const auto write = Next<decltype(FaultyWrite)>("write");
  if (!fault) return write(file, bytes, count);
  if (fault == &kKill) {
    write(file, bytes, count / 2);
    raise(SIGKILL);
  }
  if (fault->error != 0) {
    errno = fault->error;
    return -1;
  }
  return fault->most == 0 ? 0 : write(file, bytes, std::min(count, fault->most));
}

// A descriptor is gone whatever its closing reports.
int FaultyClose(int file) {
  const FileFault* const fault = FaultOf("close");
  if (fault == &kKill) raise(SIGKILL);
  const int result = Next<decltype(FaultyClose)>("close")(file);
  if (!fault || fault->error == 0) return result;
  errno = fault->error;
  return -1;
}

namespace sab::testing {

long WithEachFileCallFailing(const std::function<void()>& act, const std::function<void()>& check) {
  long faults = 0;
  for (const FileFault& fault : kFileFaults) {
    for (long successes = 0;; ++successes, ++faults) {
      const OpenDescriptors descriptors;
      planned = &fault;
      struck_call = nullptr;
      calls_until_fault = successes;
      act();
      calls_until_fault = kNever;
      SCOPED_TRACE(std::string(fault.name) + " at call " + std::to_string(successes) + ", of " +
                   (struck_call ? struck_call : "none"));
      descriptors.ExpectNoMore();
      check();
      if (!struck_call) break;
      if (::testing::Test::HasFailure()) return faults;
    }
  }
  return faults;
}

long KilledAtEachFileCall(const std::function<void()>& act, const std::function<void()>& check) {
  for (long kills = 0;; ++kills) {
    const pid_t child = fork();
    if (child == 0) {
      planned = &kKill;
      calls_until_fault = kills;
      act();
      _exit(0);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL) return kills;
    SCOPED_TRACE("killed at call " + std::to_string(kills));
    check();
  }
}

}  // namespace sab::testing
