#include "project/source.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "project/path_finder.h"
#include "xml/document.h"

namespace sab::project {

void Source::Open(const std::string& path, std::string bytes) {
  open_[FullPathOf(path)] = std::move(bytes);
}

void Source::Close(const std::string& path) { open_.erase(FullPathOf(path)); }

bool Source::IsOpen(const std::string& path) const { return open_.contains(FullPathOf(path)); }

std::optional<std::string> Source::Read(const std::string& path, std::string& reason) const {
  const auto open = open_.empty() ? open_.end() : open_.find(FullPathOf(path));
  if (open != open_.end()) return open->second;
  std::error_code error;
  if (std::filesystem::is_directory(PathOf(path), error)) {
    reason = "this is a folder";
    return std::nullopt;
  }
  std::ifstream stream(PathOf(path), std::ios::binary | std::ios::ate);
  if (!stream) {
    reason = std::strerror(errno);
    return std::nullopt;
  }
  const auto size = static_cast<std::size_t>(stream.tellg());
  std::string bytes;
  bytes.reserve(size + xml::Document::kPadding);
  bytes.resize(size);
  stream.seekg(0);
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  if (stream.gcount() != static_cast<std::streamsize>(size)) {
    reason = "it cannot be read to its end";
    return std::nullopt;
  }
  return bytes;
}

}  // namespace sab::project
