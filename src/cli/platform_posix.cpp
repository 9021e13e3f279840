#include <dlfcn.h>
#include <fcntl.h>
#include <sabxml/com/registry_change.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <set>

#include "cli/host/automation.h"
#include "cli/platform.h"
#include "text/utf.h"

namespace sabxml::cli {
namespace {

// As the component runtime looks for it.
std::string RegistryPath() {
  std::string path = EnvironmentVariable("SABCOM_REGISTRY");
  if (!path.empty()) return path;
  path = EnvironmentVariable("XDG_DATA_HOME");
  if (!path.starts_with('/')) path = EnvironmentVariable("HOME") + "/.local/share";
  return path + "/sabcom/registry.reg";
}

std::string ErrorOfInput() {
  return std::string("the standard input cannot be read: ") + std::strerror(errno);
}

sigset_t InterruptSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  return signals;
}

class ScratchFolder {
 public:
  ScratchFolder() {
    path_ = (std::filesystem::temp_directory_path() / "sabxml-XXXXXX").string();
    if (!mkdtemp(path_.data())) throw Failure(path_ + ": no such folder can be made");
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// A key that holds others has no line of its own in the file.
std::vector<std::string> RegistryLines() {
  std::set<std::string> lines;
  std::ifstream file(RegistryPath());
  std::string key;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.starts_with("Windows Registry")) continue;
    if (line.front() == '[') {
      key = line;
      for (std::size_t at = key.find('\\'); at != std::string::npos;) {
        at = key.find('\\', at + 1);
        lines.insert(key.substr(0, std::min(at, key.size() - 1)) + "]");
      }
    } else {
      lines.insert(key + " " + line);
    }
  }
  return {lines.begin(), lines.end()};
}

}  // namespace

std::vector<std::string> Arguments(int argc, char** argv) {
  std::vector<std::string> arguments(argv, argv + argc);
  for (const std::string& argument : arguments) {
    if (!sab::text::IsUtf8(argument)) {
      throw Failure(argument +
                    ": this is not UTF-8, and the server takes no other names; rename it");
    }
  }
  return arguments;
}

std::size_t ReadStandardInput(char* bytes, std::size_t size) {
  ssize_t count = 0;
  do {
    count = read(STDIN_FILENO, bytes, size);
  } while (count < 0 && errno == EINTR);
  return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

std::string CopyStandardInput() {
  // A file without a name needs no removal, however the program ends.
  const int copy = memfd_create("standard input", MFD_CLOEXEC);
  char bytes[65536];
  ssize_t size = copy < 0 ? -1 : 1;
  while (size > 0 || (size < 0 && errno == EINTR && copy >= 0)) {
    size = read(STDIN_FILENO, bytes, sizeof bytes);
    for (ssize_t at = 0; at < size;) {
      const ssize_t written = write(copy, bytes + at, static_cast<std::size_t>(size - at));
      if (written < 0 && errno != EINTR) throw Failure(ErrorOfInput());
      at += std::max<ssize_t>(written, 0);
    }
  }
  if (size < 0) throw Failure(ErrorOfInput());
  return "/proc/self/fd/" + std::to_string(copy);
}

// Beside the program in a build folder; where libraries are once both are installed.
std::string OwnServer() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  const std::string program(path, length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::filesystem::path folder = std::filesystem::path(program).parent_path();
  const char* const name = "libSabXmlParser.so";
  const std::filesystem::path installed = folder / SABXML_LIBRARIES_FROM_PROGRAM / name;
  std::error_code ignored;
  if (!std::filesystem::exists(folder / name, ignored) &&
      std::filesystem::exists(installed, ignored)) {
    return installed.lexically_normal().string();
  }
  return (folder / name).string();
}

std::string EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

bool OutputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }

bool OutputIsPipe() {
  struct stat status {};
  return fstat(STDOUT_FILENO, &status) == 0 && S_ISFIFO(status.st_mode);
}

bool InputIsTerminal() { return isatty(STDIN_FILENO) == 1; }

bool ErrorsAreOnTerminal() { return isatty(STDERR_FILENO) == 1; }

void PrepareOutput() { signal(SIGPIPE, SIG_DFL); }

std::string MakeTemporaryFile(const std::string& text) {
  std::string path = (std::filesystem::temp_directory_path() / "sabxml-XXXXXX.txt").string();
  const int file = mkstemps(path.data(), 4);
  const bool is_written =
      file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  const int error = errno;
  if (file >= 0) close(file);
  if (!is_written) throw Failure(path + ": cannot be written: " + std::strerror(error));
  return path;
}

void RunEditor(const std::string& file) {
  std::string editor = EnvironmentVariable("VISUAL");
  if (editor.empty()) editor = EnvironmentVariable("EDITOR");
  if (editor.empty()) editor = "editor";
  // The variables hold commands with arguments, so a shell reads them.
  const std::string command = editor + " \"$1\"";
  const pid_t child = fork();
  if (child == 0) {
    execl("/bin/sh", "sh", "-c", command.c_str(), "sh", file.c_str(), nullptr);
    _exit(127);
  }
  int status = -1;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  if (status == 0) return;
  throw Failure("the editor " + editor +
                " failed, and nothing was changed; VISUAL or EDITOR names the one to use");
}

void OpenForPerson(const std::string& file_or_address) {
  std::string program = "xdg-open";
  std::string target = file_or_address;
  char* const arguments[] = {program.data(), target.data(), nullptr};
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&quiet, output, "/dev/null", O_WRONLY, 0);
  }
  pid_t process = 0;
  const int error = posix_spawnp(&process, arguments[0], &quiet, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&quiet);
  if (error != 0) {
    throw Failure("xdg-open cannot be run: " + std::string(std::strerror(error)) + "; open " +
                  target + " in a browser");
  }
}

void CatchInterrupt() {
  const sigset_t signals = InterruptSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

bool WaitForInterrupt(unsigned milliseconds) {
  const sigset_t signals = InterruptSignals();
  const timespec time{static_cast<time_t>(milliseconds / 1000),
                      static_cast<long>(milliseconds % 1000) * 1000000};
  return sigtimedwait(&signals, nullptr, &time) > 0;
}

void* LoadServerLibrary(const std::string& path) {
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    throw Failure("the server's library cannot be loaded: " + std::string(dlerror()) +
                  "\nName it with --server, or register it.");
  }
  return library;
}

void* FunctionOf(void* library, const char* name) { return dlsym(library, name); }

RegistryDifference TryOnScratchRegistry(const std::function<void()>& change) {
  const ScratchFolder scratch;
  const std::string copy = scratch.Path() + "/registry.reg";
  std::error_code error;
  std::filesystem::copy_file(RegistryPath(), copy, error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throw Failure(RegistryPath() + ": cannot copy the registry: " + error.message());
  }
  UseRegistryFile(copy);
  RegistryDifference result;
  result.before = RegistryLines();
  change();
  result.after = RegistryLines();
  return result;
}

std::string LastChangeOf(HKEY) {
  struct stat status {};
  if (stat(RegistryPath().c_str(), &status) != 0) return {};
  char text[32];
  std::tm local{};
  localtime_r(&status.st_mtime, &local);
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local)};
}

std::string RegistryFile() { return RegistryPath(); }

std::vector<ClassesKey> ClassesKeys() {
  return {{HKEY_CURRENT_USER, "Software\\Classes\\"}, {HKEY_CLASSES_ROOT, ""}};
}

void UseRegistryFile(const std::string& path) { setenv("SABCOM_REGISTRY", path.c_str(), 1); }

}  // namespace sabxml::cli
