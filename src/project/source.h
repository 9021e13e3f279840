#pragma once

#include <map>
#include <optional>
#include <string>

namespace sab::project {

/// Where the files of a project come from: the disk, and before it the texts that an editor has
/// open, which count instead of the files of their names.
class Source {
 public:
  /// Takes a text instead of a file, which need not exist.
  /// @param path with slashes
  void Open(const std::string& path, std::string bytes);
  void Close(const std::string& path);

  /// All bytes of a file, with room for what a reader puts behind them; nothing, and the reason in
  /// words, for one that cannot be read.
  std::optional<std::string> Read(const std::string& path, std::string& reason) const;
  bool IsOpen(const std::string& path) const;

 private:
  std::map<std::string, std::string> open_;  // by full path
};

}  // namespace sab::project
