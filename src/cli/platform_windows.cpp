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

bool ErrorsAreOnTerminal() { return _isatty(_fileno(stderr)) != 0; }

void PrepareOutput() {
  // The console belongs to the shell, which continues after this program.
  static const UINT code_page = GetConsoleOutputCP();
  if (code_page != 0) std::atexit([] { SetConsoleOutputCP(code_page); });
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
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
RegistryChange TryOnScratchRegistry(const std::function<void()>&) {
  throw Failure("--dry-run is for systems whose registry is a file; nothing was changed");
}

void UseRegistryFile(const std::string&) {
  throw Failure("--registry is for systems whose registry is a file");
}

}  // namespace sabxml::cli
