#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "base/com_error.h"
#include "base/text.h"

namespace sab {

/// An empty folder of a test's own, removed at its end with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("sab-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::filesystem::path Path(const std::string& name) const { return path_ / name; }

  /// The full name of a file in the folder as a parser is given it.
  Text Name(const std::string& name) const { return NameOf(Path(name)); }
  static Text NameOf(const std::filesystem::path& path) {
    const auto utf8 = path.u8string();
    return FromUtf8(std::string(utf8.begin(), utf8.end()));
  }

  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
  }

  std::string Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// The names of all that stands in the folder, to find what was left behind.
  std::vector<std::string> Entries() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename().string());
    return names;
  }

 private:
  std::filesystem::path path_;
};

/// The result code of what a call raises; S_OK if it raises nothing.
template <class Call>
HRESULT ResultOf(const Call& call, std::string* message = nullptr) {
  try {
    call();
    return S_OK;
  } catch (const ComError& error) {
    if (message) *message = error.what();
    return error.Code();
  }
}

}  // namespace sab
