#pragma once

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>

namespace sab::lsp {

/// Serves one client until it ends the server or is gone.
/// @param version of the program
/// @param read waits for bytes and gives how many there are; 0 at the end
/// @param output receives messages, each flushed
/// @return the exit code that the protocol asks for: 0 after a shutdown, else 1
int Serve(const std::string& version, const std::function<std::size_t(char*, std::size_t)>& read,
          std::ostream& output);

}  // namespace sab::lsp
