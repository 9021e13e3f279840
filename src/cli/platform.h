#pragma once

#include <sabxml/com.h>

#include <functional>
#include <string>
#include <vector>

namespace sabxml::cli {

// What the program needs of the system beyond the component runtime.

/// In UTF-8. Raises Failure for an argument that has no such form, since a file of another name
/// would be opened.
std::vector<std::string> Arguments(int argc, char** argv);
std::string OwnServer();                            ///< the library that came with this program
std::string EnvironmentVariable(const char* name);  ///< in UTF-8; empty if there is none
bool OutputIsTerminal();                            ///< and obeys the usual sequences for colours
bool ErrorsAreOnTerminal();
bool InputIsTerminal();
bool OutputIsPipe();
/// Waits for bytes of the standard input, as they are, and gives how many there are; 0 at its end.
std::size_t ReadStandardInput(char* bytes, std::size_t size);
std::string CopyStandardInput();  ///< path of a file that lasts as long as the program
void PrepareOutput();             ///< UTF-8; where the system can, a closed pipe ends the program

/// A new file with a text that only this user may read; stays. Raises Failure.
/// @return its path
std::string MakeTemporaryFile(const std::string& text);
/// Lets the user edit a file: the program that VISUAL or EDITOR names, else the system's usual one.
/// Raises Failure where it cannot be started or fails.
void RunEditor(const std::string& file);

/// Shows a file or an address in the program that the person uses for it. Raises Failure.
void OpenForPerson(const std::string& file_or_address);

/// From now on Ctrl+C ends WaitForInterrupt instead of the program. Before any thread is made.
void CatchInterrupt();
/// Waits up to so many milliseconds. True once the person, or the system, wants the program to end.
bool WaitForInterrupt(unsigned milliseconds);

/// A library of a server that is not registered; stays loaded.
/// Raises Failure with the loader's reason.
void* LoadServerLibrary(const std::string& path);
/// An exported function; null if there is none.
void* FunctionOf(void* library, const char* name);

/// What is in the registry before and after a change: a line for each key and each value.
struct RegistryDifference {
  std::vector<std::string> before;
  std::vector<std::string> after;
};

/// Runs a change of the registry on a scratch copy, so that nothing is changed. Raises Failure
/// where the system offers no such thing.
RegistryDifference TryOnScratchRegistry(const std::function<void()>& change);

/// When a key was changed last, as local time "2026-11-22T02:30:00"; where the registry is a file,
/// the whole of it. Empty where the system does not tell.
std::string LastChangeOf(HKEY key);
/// The file that is the registry; empty where it is that of the system.
std::string RegistryFile();

/// A key that holds those of classes.
struct ClassesKey {
  HKEY root;
  std::string path;  ///< with a backslash at its end, or empty
};

/// Where the system looks for a class: what the first has counts.
std::vector<ClassesKey> ClassesKeys();

/// The file that is the registry, from the command line.
void UseRegistryFile(const std::string& path);

}  // namespace sabxml::cli
