#pragma once

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
bool OutputIsPipe();
std::string CopyStandardInput();  ///< path of a file that lasts as long as the program
void PrepareOutput();             ///< UTF-8; where the system can, a closed pipe ends the program

/// A library of a server that is not registered; stays loaded.
/// Raises Failure with the loader's reason.
void* LoadServerLibrary(const std::string& path);
/// An exported function; null if there is none.
void* FunctionOf(void* library, const char* name);

/// What is in the registry before and after a change: a line for each key and each value.
struct RegistryChange {
  std::vector<std::string> before;
  std::vector<std::string> after;
};

/// Runs a change of the registry on a scratch copy, so that nothing is changed. Raises Failure
/// where the system offers no such thing.
RegistryChange TryOnScratchRegistry(const std::function<void()>& change);

/// The file that is the registry, from the command line.
void UseRegistryFile(const std::string& path);

}  // namespace sabxml::cli
