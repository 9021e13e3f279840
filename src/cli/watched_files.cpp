#include "cli/watched_files.h"

#include "project/path_finder.h"

namespace sabxml::cli {

WatchedFiles::Look WatchedFiles::LookAt(const std::string& path) {
  const std::filesystem::path file = sab::project::PathOf(path);
  std::error_code error;
  Look look;
  look.size = std::filesystem::file_size(file, error);
  look.exists = !error;
  if (error) return {};
  look.time = std::filesystem::last_write_time(file, error);
  return look;
}

void WatchedFiles::Watch(const std::vector<std::string>& paths) {
  std::map<std::string, Look> old;
  std::swap(old, files_);
  for (const std::string& path : paths) {
    const auto known = old.find(path);
    files_.try_emplace(path, known == old.end() ? LookAt(path) : known->second);
  }
}

std::vector<std::string> WatchedFiles::Changed() {
  std::vector<std::string> changed;
  for (auto& [path, look] : files_) {
    Look now = LookAt(path);
    if (now == look) continue;
    look = now;
    changed.push_back(path);
  }
  return changed;
}

}  // namespace sabxml::cli
