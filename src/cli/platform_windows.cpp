#include <fcntl.h>
#include <io.h>
#include <sabxml/com.h>
#include <shellapi.h>
#include <stdio.h>

#include <cstdlib>

#include "cli/host/automation.h"
#include "cli/platform.h"

namespace sabxml::cli {
namespace {

std::string ErrorText(DWORD code) {
  wchar_t text[256];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                code, 0, text, 256, nullptr);
  while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
  return length > 0 ? ToUtf8(sab::TextView(text, length)) : "error " + std::to_string(code);
}

std::string ErrorOfInput() {
  return "the standard input cannot be read: " + ErrorText(GetLastError());
}

}  // namespace

std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) {
    arguments.push_back(ToUtf8(sab::TextView(wide[i])));
    if (FromUtf8(arguments.back()) != wide[i]) {
      throw Failure(arguments.back() +
                    ": this is not Unicode, and the server takes no other names");
    }
  }
  LocalFree(wide);
  return arguments;
}

std::string OwnServer() {
  wchar_t path[32768];
  const DWORD length = GetModuleFileNameW(nullptr, path, 32768);
  const std::string program = ToUtf8(sab::TextView(path, length));
  return program.substr(0, program.rfind('\\') + 1) + "SabXmlParser.dll";
}

std::string EnvironmentVariable(const char* name) {
  const wchar_t* const value = _wgetenv(FromUtf8(name).c_str());
  return value ? ToUtf8(sab::TextView(value)) : std::string();
}

std::size_t ReadStandardInput(char* bytes, std::size_t size) {
  DWORD count = 0;
  const bool is_read = ReadFile(GetStdHandle(STD_INPUT_HANDLE), bytes, static_cast<DWORD>(size),
                                &count, nullptr) != 0;
  return is_read ? count : 0;
}

std::string CopyStandardInput() {
  static wchar_t path[MAX_PATH];
  wchar_t folder[MAX_PATH];
  HANDLE copy = INVALID_HANDLE_VALUE;
  if (GetTempPathW(MAX_PATH, folder) != 0 && GetTempFileNameW(folder, L"sab", 0, path) != 0) {
    std::atexit([] { DeleteFileW(path); });
    copy = CreateFileW(path, GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING, 0, nullptr);
  }
  if (copy == INVALID_HANDLE_VALUE) throw Failure(ErrorOfInput());
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  char bytes[65536];
  DWORD size = 0;
  DWORD written = 0;
  std::string failure;
  do {
    // A pipe whose writer is gone has come to its end.
    const bool is_read = ReadFile(input, bytes, sizeof bytes, &size, nullptr) != 0;
    if (!is_read && GetLastError() != ERROR_BROKEN_PIPE) failure = ErrorOfInput();
    if (!is_read) size = 0;
    if (!WriteFile(copy, bytes, size, &written, nullptr)) failure = ErrorOfInput();
  } while (size > 0 && failure.empty());
  CloseHandle(copy);
  if (!failure.empty()) throw Failure(failure);
  return ToUtf8(sab::TextView(path));
}

bool OutputIsTerminal() {
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(output, &mode) &&
         SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool OutputIsPipe() { return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_PIPE; }

bool InputIsTerminal() { return _isatty(_fileno(stdin)) != 0; }

bool ErrorsAreOnTerminal() { return _isatty(_fileno(stderr)) != 0; }

void PrepareOutput() {
  // The console belongs to the shell, which continues after this program.
  static const UINT code_page = GetConsoleOutputCP();
  if (code_page != 0) std::atexit([] { SetConsoleOutputCP(code_page); });
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

std::string MakeTemporaryFile(const std::string& text) {
  wchar_t folder[MAX_PATH];
  wchar_t path[MAX_PATH];
  HANDLE file = INVALID_HANDLE_VALUE;
  if (GetTempPathW(MAX_PATH, folder) != 0 && GetTempFileNameW(folder, L"sab", 0, path) != 0)
    file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING, 0, nullptr);
  DWORD written = 0;
  const bool is_written =
      file != INVALID_HANDLE_VALUE &&
      WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  const DWORD code = GetLastError();
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  if (!is_written) throw Failure("a temporary file cannot be written: " + ErrorText(code));
  return ToUtf8(sab::TextView(path));
}

void RunEditor(const std::string& file) {
  std::string editor = EnvironmentVariable("VISUAL");
  if (editor.empty()) editor = EnvironmentVariable("EDITOR");
  if (editor.empty()) editor = "notepad";
  // The variables hold commands with arguments.
  std::wstring command = FromUtf8(editor + " \"" + file + "\"");
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  DWORD code = 1;
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                     &process)) {
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
  }
  if (code == 0) return;
  throw Failure("the editor " + editor +
                " failed, and nothing was changed; VISUAL or EDITOR names the one to use");
}

void OpenForPerson(const std::string& file_or_address) {
  const auto result = reinterpret_cast<INT_PTR>(ShellExecuteW(
      nullptr, L"open", FromUtf8(file_or_address).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  // Greater numbers are no errors.
  if (result > 32) return;
  throw Failure(file_or_address + ": no program can be started for it; open it in a browser");
}

namespace {

HANDLE InterruptEvent() {
  static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  return event;
}

BOOL WINAPI OnInterrupt(DWORD) {
  SetEvent(InterruptEvent());
  return TRUE;
}

}  // namespace

void CatchInterrupt() {
  InterruptEvent();
  SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

bool WaitForInterrupt(unsigned milliseconds) {
  return WaitForSingleObject(InterruptEvent(), milliseconds) == WAIT_OBJECT_0;
}

void* LoadServerLibrary(const std::string& path) {
  const HMODULE library = LoadLibraryW(FromUtf8(path).c_str());
  if (!library) {
    const DWORD code = GetLastError();
    throw Failure("the server's library cannot be loaded: " + path + ": " + ErrorText(code) +
                  "\nName it with --server, or register it.");
  }
  return library;
}

void* FunctionOf(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

// RegOverridePredefKey does not divert all of it: entries for 32-bit programs can still be written.
RegistryDifference TryOnScratchRegistry(const std::function<void()>&) {
  throw Failure("--dry-run is for systems whose registry is a file; nothing was changed");
}

std::string LastChangeOf(HKEY key) {
  FILETIME changed{};
  FILETIME local{};
  SYSTEMTIME time{};
  if (RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr, &changed) != ERROR_SUCCESS ||
      !FileTimeToLocalFileTime(&changed, &local) || !FileTimeToSystemTime(&local, &time)) {
    return {};
  }
  char text[64];
  const int size = snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", time.wYear,
                            time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
  return {text, static_cast<std::size_t>(size)};
}

std::string RegistryFile() { return {}; }

// The system shows the classes of the user and of the machine as one.
std::vector<ClassesKey> ClassesKeys() { return {{HKEY_CLASSES_ROOT, ""}}; }

void UseRegistryFile(const std::string&) {
  throw Failure("--registry is for systems whose registry is a file");
}

}  // namespace sabxml::cli
