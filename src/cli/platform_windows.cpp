#include <fcntl.h>
#include <io.h>
#include <sabxml/com.h>
#include <shellapi.h>
#include <stdio.h>

#include "automation.h"
#include "platform.h"

namespace sabxml::cli {

std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) {
    arguments.push_back(ToUtf8(std::basic_string_view<OLECHAR>(wide[i])));
  }
  LocalFree(wide);
  return arguments;
}

std::string FolderOfProgram() {
  wchar_t path[32768];
  const DWORD length = GetModuleFileNameW(nullptr, path, 32768);
  const std::string program = ToUtf8(std::basic_string_view<OLECHAR>(path, length));
  return program.substr(0, program.rfind('\\') + 1);
}

std::string ServerFileName() { return "SabXmlParser.dll"; }

bool OutputIsTerminal() { return _isatty(_fileno(stdout)) != 0; }

void PrepareOutput() {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

void* LoadServerLibrary(const std::string& path) {
  const HMODULE library = LoadLibraryW(FromUtf8(path).c_str());
  if (!library) {
    throw Failure("the server cannot be loaded: " + path + ": error " +
                  std::to_string(GetLastError()) + "\nName it with --server, or register it.");
  }
  return library;
}

void* FunctionOf(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

bool UseScratchRegistry() { return false; }

std::vector<std::string> RegistryLines() { return {}; }

void UseRegistryFile(const std::string&) {
  throw Failure("--registry is for systems whose registry is a file");
}

}  // namespace sabxml::cli
