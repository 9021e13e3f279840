#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace sabxml::cli {

/// Files, some of which may not exist yet, and what they were like when they were looked at last.
class WatchedFiles {
 public:
  static constexpr unsigned kInterval = 250;  ///< milliseconds from one look to the next

  /// Takes other files; of those that are known already, changes since the last look still count.
  void Watch(const std::vector<std::string>& paths);

  /// The files that are not as they were: changed, made or removed.
  std::vector<std::string> Changed();

 private:
  struct Look {
    bool exists = false;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;

    bool operator==(const Look&) const = default;
  };
  static Look LookAt(const std::string& path);

  std::map<std::string, Look> files_;
};

}  // namespace sabxml::cli
