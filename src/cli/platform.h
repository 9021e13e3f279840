#pragma once

#include <string>
#include <vector>

namespace sabxml::cli {

// What the program needs of the system beyond the component runtime.

std::vector<std::string> Arguments(int argc, char** argv);  ///< in UTF-8
std::string FolderOfProgram();
std::string ServerFileName();                       ///< as the build names it
std::string EnvironmentVariable(const char* name);  ///< in UTF-8; empty if there is none
bool OutputIsTerminal();                            ///< and obeys the usual sequences for colours
bool ErrorsAreOnTerminal();
void PrepareOutput();  ///< UTF-8; a closed pipe ends the program without a word

/// A library of a server that is not registered; stays loaded.
/// Raises Failure with the loader's reason.
void* LoadServerLibrary(const std::string& path);
/// An exported function; null if there is none.
void* FunctionOf(void* library, const char* name);

/// The registry as text for comparing, one key or value a line, and a scratch copy of it that
/// stands in its place until the program ends. Empty where the system offers no such thing.
bool UseScratchRegistry();
std::vector<std::string> RegistryLines();
/// The file that is the registry, from the command line.
void UseRegistryFile(const std::string& path);

}  // namespace sabxml::cli
